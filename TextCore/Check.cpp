#include "TextCore/Check.h"

#include <cstdio>
#include <cstdlib>

namespace quelm {

void programmingError(const char* violated, std::source_location where) {
    std::fprintf(stderr, "%s:%u: %s: programming error: %s\n", where.file_name(), static_cast<unsigned>(where.line()),
                 where.function_name(), violated);
    std::fflush(stderr);
    std::abort();
}

} // namespace quelm
