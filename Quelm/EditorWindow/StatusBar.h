#pragma once

#include "Quelm/EditorWindow/StateNotices.h"
#include "Quelm/EditorWindow/StatusContents.h"

#include <QWidget>

#include <span>

namespace quelm {

class EditorModel;
class ElidedLabel;
class PlainButton;
class SymbolLabel;
class WorkIndicator;

/// The line under a document: whether it is valid and where it is not, how many nodes it has, the style it is written
/// in, and the path of the node that is selected in a tree; at the right end, what is under way, how far it is if that
/// is known, and a button to cancel it. Follows the model, once a turn of the event loop; what runs short of space is
/// cut with "…" and told by a tooltip.
class StatusBar : public QWidget {
    Q_OBJECT

public:
    /// The model must outlive it.
    explicit StatusBar(EditorModel& model, QWidget* parent = nullptr,
                       StateNotices::Receiver receiver = StateNotices::Receiver::assistiveTechnology());
    ~StatusBar() override;

    /// What it says now.
    const StatusContents& contents() const { return contents_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Part;

    void followModel();
    void scheduleRefresh();
    void refresh();
    void showContents(const StatusContents& contents);
    void showState(const StatusContents& contents);
    void announceState();
    void showWork();
    void arrange();
    void place(std::span<Part> parts, int left) const;

    EditorModel& model_;
    StatusContents contents_;
    StateNotices notices_;
    bool isRefreshScheduled_ = false;
    /// Whether it shows what the model has under way.
    bool isWorkTold_ = true;
    SymbolLabel* stateSymbol_;
    ElidedLabel* stateText_;
    PlainButton* goToErrorButton_;
    ElidedLabel* nodeCount_;
    ElidedLabel* format_;
    ElidedLabel* path_;
    ElidedLabel* workTitle_;
    WorkIndicator* workIndicator_;
    PlainButton* cancelButton_;
};

} // namespace quelm
