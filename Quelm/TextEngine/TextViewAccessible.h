#pragma once

#include "Quelm/TextEngine/ReadingUnits.h"
#include "Quelm/TextEngine/TextSelection.h"

#include <QAccessibleWidget>

#include <optional>

namespace quelm {

class TextView;

/// Makes text views, of subclasses too, known to assistive technology as editable texts. Further calls do nothing.
void installTextViewAccessibility();

/// What assistive technology sees of a text view. The interface's limits, and its conventions:
/// - Offsets are UTF-16 units, counted in int: the text from the greatest int on cannot be named, and places there are
///   given as that. -1 stands for the end and -2 for the caret; other offsets outside of the text are clamped, unless
///   said otherwise.
/// - No more than `longestText` units are handed out at a time, and never half a surrogate pair. No question costs more
///   than O(log n + the units handed out), and laying out what is near the place where it is about places on screen.
/// - Places on screen are global, and kept within the range of int for what is far outside of the viewport.
/// - Edits are undo steps of the view, each leaving the caret after what it inserted. A text that is only read refuses
///   them.
///
/// It may be asked for its state while the view is being destroyed, and then is no longer valid.
class TextViewAccessible : public QAccessibleWidget,
                           public QAccessibleTextInterface,
                           public QAccessibleEditableTextInterface {
public:
    static constexpr int longestText = 64 * 1024;

    explicit TextViewAccessible(TextView& view);

    // QAccessibleInterface
    bool isValid() const override;
    QAccessible::State state() const override;
    /// The value is the start of the text.
    QString text(QAccessible::Text kind) const override;
    /// Setting the value replaces all of the text.
    void setText(QAccessible::Text kind, const QString& text) override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    // QAccessibleTextInterface: the selection. There is one or, where nothing is selected, none.
    int selectionCount() const override;
    void selection(int index, int* start, int* end) const override;
    /// Selects that instead of what is selected.
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    /// The caret goes to `end`, which may be before `start`.
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    /// Scrolls there too.
    void setCursorPosition(int position) override;

    // QAccessibleTextInterface: the text. Units are those of `ReadingUnits`; where there is none, or the offset is
    // outside of the text, both bounds are -1.
    int characterCount() const override;
    QString text(int start, int end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int* start, int* end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType kind, int* start, int* end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int* start, int* end) const override;
    /// The colour and the font of the character after `offset`, at the end of the text those of the last one, as
    /// IAccessible2 writes text attributes, and the run of characters that have them. Both bounds are -1 outside of the
    /// text.
    QString attributes(int offset, int* start, int* end) const override;

    // QAccessibleTextInterface: places on screen.
    QRect characterRect(int offset) const override;
    /// -1 outside of the viewport; beside the text the nearest place.
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;

    // QAccessibleEditableTextInterface
    void deleteText(int start, int end) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

private:
    TextView& view() const;
    ReadingUnits units() const;
    qint64 length() const;
    qint64 resolved(int offset) const;
    qint64 place(int offset) const;
    TextRange stretch(int start, int end) const;
    bool isInText(qint64 offset) const { return 0 <= offset && offset <= length(); }
    QString handOut(std::optional<TextRange> unit, int* start, int* end) const;
    void select(TextSelection selection);
    QRect characterArea(qint64 offset) const;
    void replace(TextRange range, const QString& text, const QString& name);
};

} // namespace quelm
