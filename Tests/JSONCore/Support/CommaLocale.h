#pragma once

#include <filesystem>
#include <locale>
#include <string>

namespace quelm::test {

/// While it lives, the whole process writes and reads numbers as in Spanish, with a decimal comma and points between
/// thousands: the C++ library always, the C library where the system has such a locale or the means to make one.
class CommaLocale {
public:
    CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale();

private:
    /// Whether the C library has taken such a locale.
    static bool useInstalledLocale();
    bool useOwnLocale();

    std::string formerC_;
    std::locale former_;
    /// Holds the locale made for the occasion; empty when there is none.
    std::filesystem::path directory_;
};

} // namespace quelm::test
