#pragma once

#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QImage>
#include <QMimeData>
#include <QWidget>

#include <gtest/gtest.h>
#include <memory>

namespace quelm {

/// A text view in an active window, with an undo manager, driven with the events that a user causes. Texts are written
/// with a bar where the caret is and, when something is selected, a circumflex where the selection began.
class TextViewWindow : public testing::Test {
protected:
    TextViewWindow();
    ~TextViewWindow() override;

    /// The text and the selection from now on. Without a bar, the caret is at the start.
    void open(const QString& marked);
    /// A text that is too long for marks.
    void openRope(const TextRope& text);
    QString marked() const;
    QString text() const;

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString& text);
    /// Whether the view takes the key before shortcuts do.
    bool claims(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});

    /// The middle of the left edge of a character.
    QPoint place(qint64 offset) const;
    void click(QPoint place, Qt::KeyboardModifiers modifiers = {});
    void drag(QPoint from, QPoint to);
    void moveMouse(QPoint place, Qt::MouseButtons buttons = Qt::LeftButton);
    void turnWheel(QPoint angle, Qt::KeyboardModifiers modifiers = {}, QPoint pixels = {});

    void compose(const QString& preedit);
    void commit(const QString& text, int replacementStart = 0, int replacementLength = 0);

    QImage painted();
    bool isCaretVisible() const { return view->viewport()->rect().contains(view->caretRectangle()); }

    UndoManager undoManager;
    std::unique_ptr<QWidget> window;
    TextView* view = nullptr;

private:
    void show(std::shared_ptr<TextStorage> storage);
};

} // namespace quelm
