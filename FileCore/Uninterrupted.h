#pragma once

#include <cerrno>

namespace quelm {

/// What a call of the system returns, repeated for as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call&& call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR)
            return result;
    }
}

} // namespace quelm
