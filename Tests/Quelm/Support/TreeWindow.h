#pragma once

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

    std::int64_t rowCount() const { return editor->outline().rowCount(); }
    /// -1 when the selection has no row.
    std::int64_t selectedRow() const;
    bool isWhollyVisible(std::int64_t row) const;

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Whether the view takes the key rather than leave it to its window.
    bool isAccepted(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void clickRow(std::int64_t row);
    void clickChevron(std::int64_t row, Qt::KeyboardModifiers modifiers = {});
    void turnWheel(QPoint pixels, QPoint angle);

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
    std::unique_ptr<TreeEditor> editor;
    std::unique_ptr<QWidget> window;
    TreeView* view = nullptr;
};

} // namespace quelm
