#pragma once

namespace quelm {

/// Shows the pointer of a program at work while it lives. For work on the main thread that is known beforehand to take
/// more than a moment (200 ms, say). Does nothing without an application that has a screen. May be nested.
class WaitCursor {
public:
    explicit WaitCursor(bool isWanted);
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    bool isShown_;
};

} // namespace quelm
