#pragma once

#include "Quelm/EditorWindow/StatusContents.h"
#include "Quelm/TextEngine/TextViewNotices.h"

class QWidget;

namespace quelm {

/// Tells assistive technology that the text of a document has got an error, or none any more. Whoever types does not
/// want to hear more: neither that the error is another one, nor that nothing is known for a while.
class StateNotices {
public:
    using Receiver = TextViewNotices::Receiver;

    /// What is known at first is no news.
    StateNotices(StatusContents::State state, Receiver receiver) : announced_(state), receiver_(std::move(receiver)) {}

    /// The state is shown now, by that widget.
    void announce(StatusContents::State state, QWidget& widget);

private:
    StatusContents::State announced_;
    Receiver receiver_;
};

} // namespace quelm
