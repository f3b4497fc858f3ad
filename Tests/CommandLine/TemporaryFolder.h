#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// A new empty folder, removed with all that is in it at the end of its life.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::string& path() const { return path_; }

    /// The full path of a file in it, which need not exist.
    std::string path(std::string_view name) const { return path_ + '/' + std::string(name); }

    /// Writes a file and returns its full path.
    std::string write(std::string_view name, std::string_view bytes) const;

    /// The bytes of a file; "(no file)" when there is none.
    std::string read(std::string_view name) const;

    /// The names of all files, hidden ones too, sorted.
    std::vector<std::string> names() const;

private:
    std::string path_;
};

} // namespace quelm
