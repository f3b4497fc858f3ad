#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// What a program that was started asks the one that runs already: to open files, or a new document when there are
/// none.
struct InstanceRequest {
    /// Absolute and UTF-8.
    std::vector<std::string> paths;

    /// As it is sent: 8 bytes with the version, the length of the rest in 4 (little-endian), and the paths with a zero
    /// byte after each.
    static constexpr std::size_t headerLength = 12;
    /// The most that follows the header.
    static constexpr std::size_t longestBody = std::size_t{1} << 20;

    /// Absent when a path cannot be sent, or all of them are too long.
    std::optional<std::string> encoded() const;

    /// The length of the body that a header announces; absent unless the bytes are one of this version, with a length
    /// that is allowed. For any bytes.
    static std::optional<std::size_t> bodyLength(std::string_view header);
    /// Of any bytes; absent unless they are what `encoded` puts after the header.
    static std::optional<InstanceRequest> fromBody(std::string_view body);

    friend bool operator==(const InstanceRequest&, const InstanceRequest&) = default;
};

/// What the running program says when it has understood the request, and when it has not.
inline constexpr char instanceAccepted = '+';
inline constexpr char instanceRefused = '-';

} // namespace quelm
