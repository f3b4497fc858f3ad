#include "Benchmarks/Window/ScreenServer.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quelm::bench {

namespace {

/// The number that the server writes when it takes connections; empty when it ended instead.
std::string readDisplay(int descriptor) {
    std::string text;
    char byte = 0;
    while (read(descriptor, &byte, 1) == 1 && byte != '\n')
        text += byte;
    return text;
}

} // namespace

ScreenServer::ScreenServer() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", 0, 0);
    // Without -noreset it would begin anew whenever its last client has gone, and the next would wait for that.
    const char* arguments[] = {"Xvfb", "-displayfd", "3", "-noreset", "-screen", "0", "1920x1200x24", nullptr};
    pid_t process = -1;
    const bool isStarted =
        posix_spawnp(&process, arguments[0], &actions, nullptr, const_cast<char**>(arguments), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    const std::string number = isStarted ? readDisplay(ends[0]) : std::string();
    close(ends[0]);
    if (!isStarted)
        return;
    if (number.empty()) {
        waitpid(process, nullptr, 0);
        return;
    }
    process_ = process;
    display_ = ":" + number;
}

ScreenServer::~ScreenServer() {
    if (process_ <= 0)
        return;
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

std::string ScreenServer::platformVariable() const {
    return process_ > 0 ? "QT_QPA_PLATFORM=xcb" : "QT_QPA_PLATFORM=offscreen";
}

} // namespace quelm::bench
