#include "Tests/CommandLine/TemporaryFolder.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace quelm {

TemporaryFolder::TemporaryFolder() : path_(std::filesystem::temp_directory_path() / "quelm-cli-XXXXXX") {
    require(::mkdtemp(path_.data()) != nullptr, "a temporary folder can be made");
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
    std::ofstream file(path(name), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    require(file.good(), "a file in the temporary folder can be written");
    return path(name);
}

std::string TemporaryFolder::read(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    if (!file)
        return "(no file)";
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
        names.emplace_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

} // namespace quelm
