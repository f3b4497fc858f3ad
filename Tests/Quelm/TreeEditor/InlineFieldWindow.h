#pragma once

#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QImage>
#include <QLineEdit>
#include <QPointer>
#include <QWidget>

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// An inline field over a widget that notes what reaches it, in an active window with another field, driven with the
/// events that a user causes. It is placed anew whenever it asks for it, as long as there is room.
class InlineFieldWindow : public testing::Test {
protected:
    InlineFieldWindow();
    ~InlineFieldWindow() override;

    void open(std::optional<NodeKind> kind, std::string_view text);
    void openKey(std::string_view text) { open(std::nullopt, text); }
    void openString(std::string_view text) { open(NodeKind::string, text); }
    void openNumber(std::string_view text) { open(NodeKind::number, text); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString& text);
    /// Whether the field takes the key before shortcuts do.
    bool claims(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    void compose(const QString& preedit);
    void turnWheel(int steps, Qt::KeyboardModifiers modifiers = {});

    TextView& view() const { return field->textView(); }
    std::string text() const { return std::string(field->text().view()); }
    bool isScrollBarShown() const;
    QImage painted();

    class Below;

    std::unique_ptr<QWidget> window;
    Below* below = nullptr;
    QLineEdit* other = nullptr;
    QPointer<InlineField> field;

    /// What the field called, in order: "commit TEXT", "cancel", "tab".
    std::vector<std::string> calls;
    std::optional<SharedText> committed;
    int sizeChanges = 0;
    int mostWidth = 10'000;
};

/// What the field is placed over.
class InlineFieldWindow::Below : public QWidget {
public:
    using QWidget::QWidget;
    int events = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++events; }
    void wheelEvent(QWheelEvent*) override { ++events; }
    void mousePressEvent(QMouseEvent*) override { ++events; }
    void contextMenuEvent(QContextMenuEvent*) override { ++events; }
};

} // namespace quelm
