#pragma once

#include "Benchmarks/Window/ScreenServer.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quelm::bench {

/// Starts programs of widgets and ends them when their first window is painted. They get settings of their own, which
/// are empty at first.
class ProgramStart {
public:
    /// `firstPaint` is the library that tells of the first paint.
    ProgramStart(const ScreenServer& screen, const std::filesystem::path& firstPaint);
    ~ProgramStart();
    ProgramStart(const ProgramStart&) = delete;
    ProgramStart& operator=(const ProgramStart&) = delete;

    /// The seconds from starting the program to the first painted window; absent when there was none. The arguments
    /// begin with the program's file.
    std::optional<double> secondsToFirstPaint(const std::vector<std::string>& arguments) const;

    /// A folder for the time of the measuring.
    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
    std::vector<std::string> environment_;
};

} // namespace quelm::bench
