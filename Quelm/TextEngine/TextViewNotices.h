#pragma once

#include "Quelm/TextEngine/TextSelection.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QObject>

#include <functional>

class QAccessibleEvent;

namespace quelm {

class TextView;

/// Tells assistive technology, while there is any, what happens to a text view: edits of its storage, wherever they are
/// made, moves of the caret and the selection, and whether it is read-only (of which the view sends itself
/// QEvent::ReadOnlyChange). The focus is announced by Qt.
///
/// Of what an edit inserted and removed the first `longestText` units are told. Places are as `accessibleOffset` gives
/// them. O(log n + units told).
class TextViewNotices : public QObject {
public:
    static constexpr qint64 longestText = 4096;

    /// Whom to tell.
    struct Receiver {
        /// Whether it wants to be told at this moment. What happens until it does is never told.
        std::function<bool()> isListening;
        std::function<void(QAccessibleEvent&)> take;

        static Receiver assistiveTechnology();
    };

    /// The view owns it, and has connected its own parts to the storage before.
    explicit TextViewNotices(TextView& view, Receiver receiver = Receiver::assistiveTechnology());

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void announceEdit(EditedMask mask, TextRange range, qint64 delta);
    void announceSelection();
    void announceReadOnly();

    TextView& view_;
    const Receiver receiver_;
    /// The storage's text as of the last edit: what the next one removes is read there.
    TextRope announcedText_;
    TextSelection announcedSelection_;
};

} // namespace quelm
