#pragma once

#include "TextCore/TextRope.h"

#include <QPoint>
#include <QString>
#include <QWidget>

#include <memory>
#include <string>

namespace quelm::bench {

/// A text editor in a window, driven as a user drives it: with key and mouse events, each waited for until what it has
/// changed is painted.
class Editor {
public:
    virtual ~Editor() = default;

    /// How results call it.
    virtual std::string name() const = 0;

    virtual void setText(const TextRope& text) = 0;
    /// Puts the caret somewhere without being measured, and shows it. In UTF-16 units.
    virtual void placeCaret(qint64 offset) = 0;
    virtual qint64 length() const = 0;
    /// What takes the events.
    virtual QWidget& keyboardTarget() = 0;
    virtual QWidget& mouseTarget() = 0;

    void show();
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void click(QPoint place);
    /// Handles events until all that there is to paint is painted.
    void settle();

protected:
    virtual QWidget& window() = 0;
};

/// Ours: the text editor of a document window, with line numbers, colours and matching brackets.
std::unique_ptr<Editor> makeQuelmEditor();

/// Qt's own plain text editor, bare.
std::unique_ptr<Editor> makeQPlainTextEdit();

} // namespace quelm::bench
