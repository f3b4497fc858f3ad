#include "Tests/JSONCore/Support/CommaLocale.h"

#include <clocale>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace quelm::test {

namespace {

class CommaNumbers : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

bool hasDecimalComma() {
    return std::string_view(std::localeconv()->decimal_point) == ",";
}

} // namespace

CommaLocale::CommaLocale()
    : formerC_(std::setlocale(LC_ALL, nullptr)),
      former_(std::locale::global(std::locale(std::locale::classic(), new CommaNumbers))) {
    if (!useInstalledLocale() && !useOwnLocale())
        std::setlocale(LC_ALL, formerC_.c_str());
}

CommaLocale::~CommaLocale() {
    std::locale::global(former_);
    std::setlocale(LC_ALL, formerC_.c_str());
    if (!directory_.empty()) {
        unsetenv("LOCPATH");
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }
}

bool CommaLocale::useInstalledLocale() {
    for (const char* name : {"es_ES.UTF-8", "es_ES.utf8", "de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "ca_ES.UTF-8"}) {
        if (std::setlocale(LC_ALL, name) && hasDecimalComma())
            return true;
    }
    return false;
}

bool CommaLocale::useOwnLocale() {
    std::string directory = (std::filesystem::temp_directory_path() / "quelm-locale-XXXXXX").string();
    if (!mkdtemp(directory.data()))
        return false;
    directory_ = directory;
    const std::string command =
        "localedef -i es_ES -f UTF-8 --no-archive '" + directory + "/es_ES.UTF-8' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        return false;
    setenv("LOCPATH", directory.c_str(), 1);
    return std::setlocale(LC_ALL, "es_ES.UTF-8") && hasDecimalComma();
}

} // namespace quelm::test
