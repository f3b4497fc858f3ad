#include "Benchmarks/Window/ProgramStart.h"

#include "Benchmarks/Harness/Timing.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quelm::bench {

namespace {

namespace fs = std::filesystem;

fs::path makeFolder() {
    std::string name = (fs::temp_directory_path() / "quelm-start-XXXXXX").string();
    require(mkdtemp(name.data()) != nullptr, "there is a place for temporary files");
    return name;
}

/// This process's environment without what decides about screens, settings and the session's bus.
std::vector<std::string> neutralEnvironment() {
    constexpr auto left =
        std::to_array<std::string_view>({"QT_", "DISPLAY=", "WAYLAND_DISPLAY=", "XDG_CONFIG_HOME=", "XDG_DATA_HOME=",
                                         "XDG_STATE_HOME=", "XDG_RUNTIME_DIR=", "LD_PRELOAD="});
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view text(*variable);
        if (std::ranges::none_of(left, [&](std::string_view prefix) { return text.starts_with(prefix); }))
            variables.emplace_back(text);
    }
    return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

ProgramStart::ProgramStart(const ScreenServer& screen, const fs::path& firstPaint)
    : folder_(makeFolder()), environment_(neutralEnvironment()) {
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
        environment_.push_back(std::string(variable) + "=" + folder_.string());
    environment_.push_back(screen.platformVariable());
    environment_.push_back(screen.displayVariable());
    environment_.push_back("LD_PRELOAD=" + firstPaint.string());
    // Where there is no bus, a menu bar would start a program that looks for one. A desktop has one.
    if (!std::getenv("DBUS_SESSION_BUS_ADDRESS"))
        environment_.emplace_back("DBUS_SESSION_BUS_ADDRESS=disabled:");
}

ProgramStart::~ProgramStart() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::optional<double> ProgramStart::secondsToFirstPaint(const std::vector<std::string>& arguments) const {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<std::string> argumentTexts = arguments;
    std::vector<std::string> variableTexts = environment_;
    std::vector<char*> argumentPointers = pointers(argumentTexts);
    std::vector<char*> variablePointers = pointers(variableTexts);

    pid_t process = -1;
    bool isPainted = false;
    const double seconds = secondsOf([&] {
        if (posix_spawn(&process, arguments.front().c_str(), &actions, nullptr, argumentPointers.data(),
                        variablePointers.data()) != 0)
            process = -1;
        close(ends[1]);
        char byte = 0;
        isPainted = process > 0 && read(ends[0], &byte, 1) == 1;
    });
    posix_spawn_file_actions_destroy(&actions);
    close(ends[0]);
    if (process > 0)
        waitpid(process, nullptr, 0);
    return isPainted ? std::optional(seconds) : std::nullopt;
}

} // namespace quelm::bench
