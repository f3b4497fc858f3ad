#include "Quelm/TextEngine/TextKeyBindings.h"

#include <QKeyEvent>
#include <QKeySequence>

#include <algorithm>
#include <array>

namespace quelm {

namespace {

struct BoundMove {
    QKeySequence::StandardKey key;
    TextMove move;
};

constexpr BoundMove moving(QKeySequence::StandardKey key, TextMotion motion) {
    return {key, {motion, TextMove::Selection::collapses}};
}

constexpr BoundMove selecting(QKeySequence::StandardKey key, TextMotion motion) {
    return {key, {motion, TextMove::Selection::extends}};
}

constexpr std::array moves{
    moving(QKeySequence::MoveToNextChar, TextMotion::nextCharacter),
    moving(QKeySequence::MoveToPreviousChar, TextMotion::previousCharacter),
    moving(QKeySequence::MoveToNextWord, TextMotion::nextWord),
    moving(QKeySequence::MoveToPreviousWord, TextMotion::previousWord),
    moving(QKeySequence::MoveToNextLine, TextMotion::nextRow),
    moving(QKeySequence::MoveToPreviousLine, TextMotion::previousRow),
    moving(QKeySequence::MoveToNextPage, TextMotion::nextPage),
    moving(QKeySequence::MoveToPreviousPage, TextMotion::previousPage),
    moving(QKeySequence::MoveToStartOfLine, TextMotion::rowStart),
    moving(QKeySequence::MoveToEndOfLine, TextMotion::rowEnd),
    moving(QKeySequence::MoveToStartOfBlock, TextMotion::lineStart),
    moving(QKeySequence::MoveToEndOfBlock, TextMotion::lineEnd),
    moving(QKeySequence::MoveToStartOfDocument, TextMotion::documentStart),
    moving(QKeySequence::MoveToEndOfDocument, TextMotion::documentEnd),
    selecting(QKeySequence::SelectNextChar, TextMotion::nextCharacter),
    selecting(QKeySequence::SelectPreviousChar, TextMotion::previousCharacter),
    selecting(QKeySequence::SelectNextWord, TextMotion::nextWord),
    selecting(QKeySequence::SelectPreviousWord, TextMotion::previousWord),
    selecting(QKeySequence::SelectNextLine, TextMotion::nextRow),
    selecting(QKeySequence::SelectPreviousLine, TextMotion::previousRow),
    selecting(QKeySequence::SelectNextPage, TextMotion::nextPage),
    selecting(QKeySequence::SelectPreviousPage, TextMotion::previousPage),
    selecting(QKeySequence::SelectStartOfLine, TextMotion::rowStart),
    selecting(QKeySequence::SelectEndOfLine, TextMotion::rowEnd),
    selecting(QKeySequence::SelectStartOfBlock, TextMotion::lineStart),
    selecting(QKeySequence::SelectEndOfBlock, TextMotion::lineEnd),
    selecting(QKeySequence::SelectStartOfDocument, TextMotion::documentStart),
    selecting(QKeySequence::SelectEndOfDocument, TextMotion::documentEnd),
};

struct StandardCommand {
    QKeySequence::StandardKey key;
    TextCommand command;
};

constexpr std::array standardCommands{
    StandardCommand{QKeySequence::Copy, TextCommand::copy},
    StandardCommand{QKeySequence::Cut, TextCommand::cut},
    StandardCommand{QKeySequence::Paste, TextCommand::paste},
    StandardCommand{QKeySequence::Undo, TextCommand::undo},
    StandardCommand{QKeySequence::Redo, TextCommand::redo},
    StandardCommand{QKeySequence::SelectAll, TextCommand::selectAll},
    StandardCommand{QKeySequence::InsertParagraphSeparator, TextCommand::typeLineFeed},
    StandardCommand{QKeySequence::InsertLineSeparator, TextCommand::typeLineFeed},
    StandardCommand{QKeySequence::Delete, TextCommand::deleteNextCharacter},
    StandardCommand{QKeySequence::Backspace, TextCommand::deletePreviousCharacter},
    StandardCommand{QKeySequence::DeleteEndOfWord, TextCommand::deleteToNextWord},
    StandardCommand{QKeySequence::DeleteStartOfWord, TextCommand::deleteToPreviousWord},
    StandardCommand{QKeySequence::DeleteEndOfLine, TextCommand::deleteToLineEnd},
    StandardCommand{QKeySequence::DeleteCompleteLine, TextCommand::deleteLine},
    StandardCommand{QKeySequence::ZoomIn, TextCommand::zoomIn},
    StandardCommand{QKeySequence::ZoomOut, TextCommand::zoomOut},
};

/// Keys that not every platform counts among its standard ones.
struct FixedCommand {
    Qt::KeyboardModifiers modifiers;
    Qt::Key key;
    TextCommand command;
};

constexpr std::array fixedCommands{
    FixedCommand{Qt::NoModifier, Qt::Key_Backspace, TextCommand::deletePreviousCharacter},
    FixedCommand{Qt::ShiftModifier, Qt::Key_Backspace, TextCommand::deletePreviousCharacter},
    FixedCommand{Qt::ControlModifier, Qt::Key_Backspace, TextCommand::deleteToPreviousWord},
    FixedCommand{Qt::ControlModifier, Qt::Key_Delete, TextCommand::deleteToNextWord},
    FixedCommand{Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Backspace, TextCommand::deleteToLineStart},
    FixedCommand{Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Delete, TextCommand::deleteToLineEnd},
    FixedCommand{Qt::ShiftModifier, Qt::Key_Delete, TextCommand::cut},
    FixedCommand{Qt::ControlModifier, Qt::Key_Insert, TextCommand::copy},
    FixedCommand{Qt::ShiftModifier, Qt::Key_Insert, TextCommand::paste},
    FixedCommand{Qt::NoModifier, Qt::Key_Insert, TextCommand::toggleOverwriting},
    FixedCommand{Qt::ControlModifier, Qt::Key_Equal, TextCommand::zoomIn},
    FixedCommand{Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Plus, TextCommand::zoomIn},
    FixedCommand{Qt::ControlModifier, Qt::Key_0, TextCommand::resetZoom},
    FixedCommand{Qt::ControlModifier, Qt::Key_Up, TextCommand::scrollRowUp},
    FixedCommand{Qt::ControlModifier, Qt::Key_Down, TextCommand::scrollRowDown},
};

/// Keys that some platform counts among its standard ones and that are better left to the menus of the window. An X11
/// platform lets Ctrl+D delete a character, which nobody expects who knows the key from a menu.
bool isLeftToMenus(const QKeyEvent& event) {
    return event.key() == Qt::Key_D && event.modifiers() == Qt::ControlModifier;
}

std::optional<TextCommand> commandOf(const QKeyEvent& event) {
    if (isLeftToMenus(event))
        return std::nullopt;
    const auto* standard = std::ranges::find_if(
        standardCommands, [&event](const StandardCommand& bound) { return event.matches(bound.key); });
    if (standard != standardCommands.end())
        return standard->command;
    const Qt::KeyboardModifiers modifiers =
        event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const auto* fixed = std::ranges::find_if(fixedCommands, [&event, modifiers](const FixedCommand& bound) {
        return bound.key == event.key() && bound.modifiers == modifiers;
    });
    if (fixed != fixedCommands.end())
        return fixed->command;
    return std::nullopt;
}

/// Whether the text of a key is one to be typed rather than the control character of a shortcut.
bool isTyped(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    // Both together are what the third level of a keyboard is on some platforms.
    if (event.text().isEmpty() || modifiers == Qt::ControlModifier || modifiers == Qt::AltModifier)
        return false;
    const QChar first = event.text().front();
    return first.isPrint() || first == u'\t' || first.isSurrogate() || first.category() == QChar::Other_Format ||
           first.category() == QChar::Other_PrivateUse;
}

} // namespace

std::optional<TextKeyMeaning> meaningOf(const QKeyEvent& event) {
    // Most keys by far; the tables hold none of them.
    if (!(event.modifiers() & Qt::ControlModifier) && isTyped(event))
        return event.text();
    if (const auto command = commandOf(event))
        return *command;
    const auto* bound =
        std::ranges::find_if(moves, [&event](const BoundMove& candidate) { return event.matches(candidate.key); });
    if (bound != moves.end())
        return bound->move;
    if (event.key() == Qt::Key_Tab && !(event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)))
        return QStringLiteral("\t");
    if (isTyped(event))
        return event.text();
    return std::nullopt;
}

} // namespace quelm
