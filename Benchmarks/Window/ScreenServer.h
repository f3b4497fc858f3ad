#pragma once

#include <string>
#include <sys/types.h>

namespace quelm::bench {

/// A screen of its own for programs that are started: an X server without a picture, where one is installed, else none.
class ScreenServer {
public:
    ScreenServer();
    ~ScreenServer();
    ScreenServer(const ScreenServer&) = delete;
    ScreenServer& operator=(const ScreenServer&) = delete;

    /// What there is, as in results: "xvfb" or "offscreen".
    const char* name() const { return process_ > 0 ? "xvfb" : "offscreen"; }

    /// Variables of the environment, as in "DISPLAY=:5", that put a program of Qt's on it.
    std::string platformVariable() const;
    std::string displayVariable() const { return "DISPLAY=" + display_; }

private:
    pid_t process_ = -1;
    std::string display_;
};

} // namespace quelm::bench
