#pragma once

#include "JSONCore/NodeKind.h"
#include "TextCore/SharedText.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class QFocusEvent;
class QKeyEvent;

namespace quelm {

class InlineFieldExtent;
class TextStorage;
class TextView;
class UndoManager;

/// The text field that stands in place of a key or a value while it is edited. It takes the focus when it is shown,
/// shows whether its text is acceptable, and ends in exactly one of two ways: the text is handed back, or it is not. It
/// knows nothing of the tree.
///
/// The text may be any well-formed UTF-8 of any length; what is not touched comes back byte for byte. A string wraps
/// and grows up to `mostLines` lines; anything else is one line, unless it has line feeds itself. Return commits; so do
/// Tab and Shift+Tab, where there is another field to go to, and losing the focus to another part of the window (not to
/// a menu, a pop-up or another program). Escape cancels, and committing a text that is not acceptable does too. The
/// field has undo steps of its own. It is never deleted by itself: whoever shows it answers the callbacks by deleting
/// it, later or at once.
///
/// No key, click or turn of the wheel over the field reaches what is below it. What a key costs does not depend on the
/// length of the text, except in a number of many thousands of digits, which is read whole to tell whether it is one.
class InlineField : public QWidget {
    Q_OBJECT

public:
    static constexpr int mostLines = 8;

    /// `kind` is what the text must be valid for; absent for a key, which may be anything.
    InlineField(std::optional<NodeKind> kind, const SharedText& text, QWidget* parent = nullptr);
    ~InlineField() override;

    // To be set before the field is shown. One of the first two is called once, or neither after `abandon`.
    std::function<void(const SharedText& text)> onCommit;
    std::function<void()> onCancel;
    /// Called after what Tab finished, also when the field was abandoned or deleted by then; absent where Tab goes on
    /// as usual.
    std::function<void()> onTab;
    /// The same for Shift+Tab.
    std::function<void()> onBacktab;

    SharedText text() const;
    bool isValid() const { return isValid_; }

    /// Whether it has committed, cancelled or been abandoned.
    bool isFinished() const { return isFinished_; }
    /// Commits a valid text, else cancels. Nothing when it is finished.
    void finish();
    void cancel();
    /// The field is not wanted any more: from now on it calls nobody.
    void abandon();

    /// The widget that has the text and the focus.
    TextView& textView() const { return *textView_; }

    /// Where the first row of the text begins within the field, its top left corner.
    QPoint textOrigin() const;

    /// From 120 to 520 points wide as the text needs, and 1 to `mostLines` lines high at the width given.
    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    /// The text needs another size: whoever places the field does so anew.
    void sizeHintChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    enum class Key : std::uint8_t { other, finish, lineFeed, cancel, tab, backtab };

    void makeTextView();
    Key meaningOf(const QKeyEvent& event) const;
    bool handleKey(const QKeyEvent& event);
    bool handleComposingKey(Key key);
    void finishAndGo(std::function<void()> next);
    void leave(const QFocusEvent& event);
    void noteFocusElsewhere(const QWidget* old, const QWidget* now);

    bool isWrapping() const;
    void textChanged();
    void updateValidity();
    void updateSize();
    void updateScrollBar();
    int rowsAt(int width) const;
    /// What of a width the text cannot have.
    int widthBesideText() const;

    const std::optional<NodeKind> kind_;
    const SharedText original_;
    const std::shared_ptr<TextStorage> storage_;
    const bool isSingleLine_;
    std::unique_ptr<UndoManager> undoManager_;
    TextView* textView_;
    std::unique_ptr<InlineFieldExtent> extent_;
    QSize announcedSize_;
    int announcedHeight_ = 0;
    bool isEdited_ = false;
    bool isValid_ = true;
    bool isFinished_ = false;
};

} // namespace quelm
