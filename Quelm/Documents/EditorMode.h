#pragma once

#include <cstdint>
#include <string_view>

namespace quelm {

/// How a window shows its document.
enum class EditorMode : std::uint8_t { tree, text };

/// "tree" or "text": what is stored.
constexpr std::string_view rawValue(EditorMode mode) {
    return mode == EditorMode::tree ? "tree" : "text";
}

} // namespace quelm
