#pragma once

#include <thread>

namespace quelm {

/// Reads the system's list of fonts on another thread while the main thread connects to the screen, which is mostly
/// waiting. Qt would begin to read it when the first text is measured. Does nothing where that list is none of
/// fontconfig's.
class FontPreparation {
public:
    FontPreparation();
    /// Waits for the list.
    ~FontPreparation() = default;
    FontPreparation(const FontPreparation&) = delete;
    FontPreparation& operator=(const FontPreparation&) = delete;

private:
    std::jthread thread_;
};

} // namespace quelm
