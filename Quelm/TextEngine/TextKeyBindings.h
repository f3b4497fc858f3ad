#pragma once

#include "Quelm/TextEngine/TextNavigation.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <variant>

class QKeyEvent;

namespace quelm {

/// What a key can ask of a text view, besides moving the caret and typing.
enum class TextCommand : std::uint8_t {
    copy,
    selectAll,
    zoomIn,
    zoomOut,
    resetZoom,
    scrollRowUp,
    scrollRowDown,
    // What follows edits.
    cut,
    paste,
    undo,
    redo,
    typeLineFeed,
    deleteNextCharacter,
    deletePreviousCharacter,
    deleteToNextWord,
    deleteToPreviousWord,
    deleteToLineEnd,
    deleteToLineStart,
    deleteLine,
    toggleOverwriting,
};

constexpr bool isEdit(TextCommand command) {
    return command >= TextCommand::cut;
}

/// A motion of the caret, which leaves the selection behind or takes it along.
struct TextMove {
    enum class Selection : std::uint8_t { collapses, extends };

    TextMotion motion = TextMotion::nextCharacter;
    Selection selection = Selection::collapses;

    friend bool operator==(const TextMove&, const TextMove&) = default;
};

/// What a key means in a text view: a move, a command, or text that is typed.
using TextKeyMeaning = std::variant<TextMove, TextCommand, QString>;

/// As the platform binds its keys; absent for keys that mean nothing in a text. Tab is text here.
std::optional<TextKeyMeaning> meaningOf(const QKeyEvent& event);

} // namespace quelm
