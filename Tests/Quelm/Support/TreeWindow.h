#pragma once

#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QImage>
#include <QWidget>

#include <gtest/gtest.h>
#include <memory>

namespace quelm {

/// A tree view in an active window, driven with the events that a user causes.
class TreeWindow : public testing::Test {
protected:
    ~TreeWindow() override;

    void open(std::string_view text);
    void replace(std::string_view text);

    /// The document's JSON on one line.
    std::string json() const;
    std::string selectedKey() const;

    std::int64_t rowCount() const { return editor->outline().rowCount(); }
    /// -1 when the selection has no row.
    std::int64_t selectedRow() const;
    bool isWhollyVisible(std::int64_t row) const;

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Whether the view takes the key rather than leave it to its window.
    bool isAccepted(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Types into whatever has the focus, key by key.
    void type(const QString& text);
    void clickRow(std::int64_t row, Qt::MouseButton button = Qt::LeftButton);
    void doubleClickRow(std::int64_t row);
    void clickBadge(std::int64_t row);
    void clickChevron(std::int64_t row, Qt::KeyboardModifiers modifiers = {});
    void turnWheel(QPoint pixels, QPoint angle);

    /// The field that is open, or a failure.
    InlineField& field() const;
    /// Presses a key in the open field, which may go with that.
    void pressInField(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Puts a text in place of the one in the open field.
    void enter(const QString& text);
    QString fieldText() const;
    /// What the menu that is open offers, to be chosen.
    QAction* menuItem(const QString& title) const;
    void choose(const QString& title);

    QPoint rowCentre(std::int64_t row) const;
    /// Where a row would be, whether it is there or not.
    QPoint rowCentreForHeight(int row) const;
    QPoint chevron(std::int64_t row) const;
    QString tip(std::int64_t row, TreeRowPart part) const;

    QImage painted();
    /// Whether nothing but one colour is painted there.
    bool isBlank(const QRect& area);

    TemporaryPreferences preferences;
    std::shared_ptr<JSONDocument> document;
    std::unique_ptr<UndoManager> undoManager;
    std::unique_ptr<TreeEditor> editor;
    std::unique_ptr<QWidget> window;
    TreeView* view = nullptr;
};

} // namespace quelm
