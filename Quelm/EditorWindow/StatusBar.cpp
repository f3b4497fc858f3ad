#include "Quelm/EditorWindow/StatusBar.h"

#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/EditorWindow/ElidedLabel.h"
#include "Quelm/EditorWindow/PlainButton.h"
#include "Quelm/EditorWindow/SymbolLabel.h"
#include "Quelm/EditorWindow/WorkIndicator.h"
#include "Quelm/Foundation/Fonts.h"

#include <QStyle>

#include <algorithm>
#include <array>
#include <utility>

namespace quelm {

namespace {

int margin() {
    return scaledPixels(10);
}

/// Between one fact and the next.
int wideGap() {
    return scaledPixels(16);
}

/// Between what belongs together.
int narrowGap() {
    return scaledPixels(6);
}

/// What an error keeps while anything else can give way; less of a text than the second says nothing.
int leastErrorWidth() {
    return scaledPixels(110);
}
int leastUsefulWidth() {
    return scaledPixels(40);
}

/// A tooltip shows the beginning of a long text; what is at the end of a path matters more.
QString endForToolTip(const QString& text) {
    constexpr qsizetype most = 390;
    if (text.size() <= most)
        return text;
    QStringView end = QStringView(text).last(most);
    if (end.front().isLowSurrogate())
        end = end.sliced(1);
    return u'…' + end.toString();
}

struct StateLook {
    const char16_t* symbol;
    ColorRole symbolRole;
    ColorRole textRole;
};

StateLook lookOf(StatusContents::State state) {
    switch (state) {
    case StatusContents::State::valid:
        return {u"checkmark.circle.fill", ColorRole::green, ColorRole::secondaryText};
    case StatusContents::State::invalid:
        return {u"xmark.octagon.fill", ColorRole::red, ColorRole::red};
    case StatusContents::State::unknown:
        break;
    }
    return {u"circle.dashed", ColorRole::secondaryText, ColorRole::secondaryText};
}

} // namespace

/// A widget of the line, with the space that it is given and the gap before it.
struct StatusBar::Part {
    QWidget* widget;
    int gap;
    int width = widget->isHidden() ? 0 : widget->sizeHint().width();

    int extent() const { return width > 0 ? gap + width : 0; }
    /// Becomes smaller by up to `excess`, though not below `least`; what is left of it is dropped when it is useless.
    /// Returns how much is then still too much; below 0, how much room there is.
    int giveWay(int excess, int least) {
        if (excess <= 0)
            return excess;
        const int before = extent();
        width = std::max(width - excess, std::min(least, width));
        if (width < leastUsefulWidth())
            width = 0;
        return excess - (before - extent());
    }
    /// Takes back what it gave, as far as there is room. Returns what there is then.
    int takeBack(int room) {
        if (width == 0 || room <= 0)
            return room;
        const int taken = std::min(widget->sizeHint().width() - width, room);
        width += taken;
        return room - taken;
    }
};

StatusBar::StatusBar(EditorModel& model, QWidget* parent, StateNotices::Receiver receiver)
    : QWidget(parent), model_(model), contents_(StatusContents::of(model)),
      notices_(contents_.state, std::move(receiver)), stateSymbol_(new SymbolLabel(this)),
      stateText_(new ElidedLabel(Qt::ElideRight, this)), goToErrorButton_(new PlainButton(tr("Ir al error"), this)),
      nodeCount_(new ElidedLabel(Qt::ElideRight, this)), format_(new ElidedLabel(Qt::ElideRight, this)),
      path_(new ElidedLabel(Qt::ElideLeft, this)), workTitle_(new ElidedLabel(Qt::ElideRight, this)),
      workIndicator_(new WorkIndicator(this)), cancelButton_(new PlainButton(tr("Cancelar"), this)) {
    setFont(systemFont(TextStyle::caption));
    path_->setFont(monospacedFont(TextStyle::caption));
    setAccessibleName(tr("Barra de estado"));
    setFixedHeight(sizeHint().height());

    connect(goToErrorButton_, &QPushButton::clicked, &model_, &EditorModel::goToError);
    connect(cancelButton_, &QPushButton::clicked, &model_, &EditorModel::cancelWork);
    followModel();
    showContents(contents_);
    showWork();
}

StatusBar::~StatusBar() = default;

QSize StatusBar::sizeHint() const {
    return {scaledPixels(400), fontMetrics().height() + 2 * scaledPixels(5)};
}

QSize StatusBar::minimumSizeHint() const {
    // What can be pressed has its room, and the symbols have theirs.
    int width = 2 * margin() + wideGap() + 2 * narrowGap();
    for (const QWidget* widget : {static_cast<QWidget*>(stateSymbol_), static_cast<QWidget*>(goToErrorButton_),
                                  static_cast<QWidget*>(workIndicator_), static_cast<QWidget*>(cancelButton_)})
        width += widget->sizeHint().width();
    return {width, sizeHint().height()};
}

void StatusBar::followModel() {
    const auto follow = [this](auto* sender, auto signal) {
        connect(sender, signal, this, &StatusBar::scheduleRefresh);
    };
    follow(&model_.validator(), &TextValidator::stateChanged);
    follow(&model_.document(), &JSONDocument::contentChanged);
    follow(&model_.document(), &JSONDocument::modeChanged);
    follow(&model_.document(), &JSONDocument::revisionChanged);
    follow(&model_.tree(), &TreeEditor::selectionChanged);
    follow(&model_.tree(), &TreeEditor::outlineChanged);
    follow(&model_.tree(), &TreeEditor::didEdit);
    connect(&model_, &EditorModel::isWorkShownChanged, this, [this] {
        isWorkTold_ = false;
        scheduleRefresh();
    });
}

void StatusBar::scheduleRefresh() {
    if (std::exchange(isRefreshScheduled_, true))
        return;
    QMetaObject::invokeMethod(this, &StatusBar::refresh, Qt::QueuedConnection);
}

void StatusBar::refresh() {
    isRefreshScheduled_ = false;
    StatusContents contents = StatusContents::of(model_);
    const bool isWorkTold = std::exchange(isWorkTold_, true);
    if (contents == contents_ && isWorkTold)
        return;
    contents_ = std::move(contents);
    showContents(contents_);
    showWork();
    arrange();
    announceState();
}

void StatusBar::showContents(const StatusContents& contents) {
    showState(contents);
    const auto showText = [](ElidedLabel& label, const QString& text) {
        label.setText(text, endForToolTip(text));
        label.setVisible(!text.isEmpty());
    };
    showText(*stateText_, contents.stateText);
    showText(*nodeCount_, contents.nodeCount);
    showText(*format_, contents.format);
    showText(*path_, contents.path);
    goToErrorButton_->setVisible(contents.state == StatusContents::State::invalid);
}

void StatusBar::showState(const StatusContents& contents) {
    const StateLook look = lookOf(contents.state);
    const QString name = contents.state == StatusContents::State::valid     ? tr("JSON válido")
                         : contents.state == StatusContents::State::invalid ? tr("JSON no válido")
                                                                            : tr("Sin validar");
    stateSymbol_->setSymbol(QString::fromUtf16(look.symbol), look.symbolRole, name);
    stateText_->setColorRole(look.textRole);
}

void StatusBar::announceState() {
    QWidget* telling = contents_.stateText.isEmpty() ? static_cast<QWidget*>(stateSymbol_) : stateText_;
    notices_.announce(contents_.state, *telling);
}

void StatusBar::showWork() {
    const QString title = model_.shownSaving() ? tr("Guardando…") : QString();
    workTitle_->setText(title, title);
    workTitle_->setVisible(!title.isEmpty());
    workIndicator_->follow(model_.shownSaving());
    workIndicator_->setVisible(model_.isWorkShown());
    cancelButton_->setVisible(model_.isWorkShown());
}

void StatusBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void StatusBar::arrange() {
    enum { symbol, text, goToError, nodeCount, format, path };
    std::array<Part, 6> facts{{{stateSymbol_, 0},
                               {stateText_, narrowGap()},
                               {goToErrorButton_, narrowGap()},
                               {nodeCount_, stateText_->isHidden() ? narrowGap() : wideGap()},
                               {format_, wideGap()},
                               {path_, wideGap()}}};
    std::array<Part, 3> work{{{workTitle_, wideGap()},
                              {workIndicator_, workTitle_->isHidden() ? wideGap() : narrowGap()},
                              {cancelButton_, narrowGap()}}};

    const auto extentOf = [](std::span<const Part> parts) {
        int extent = 0;
        for (const Part& part : parts)
            extent += part.extent();
        return extent;
    };
    int excess = extentOf(facts) + extentOf(work) - (width() - 2 * margin());
    excess = facts[path].giveWay(excess, 0);
    excess = facts[text].giveWay(excess, leastErrorWidth());
    excess = facts[format].giveWay(excess, 0);
    excess = facts[nodeCount].giveWay(excess, 0);
    excess = facts[text].giveWay(excess, 0);
    excess = work[0].giveWay(excess, 0);
    const int room = facts[text].takeBack(-excess);
    facts[nodeCount].takeBack(room);

    place(facts, margin());
    place(work, width() - margin() - extentOf(work));
}

void StatusBar::place(std::span<Part> parts, int left) const {
    for (const Part& part : parts) {
        const int height = qobject_cast<ElidedLabel*>(part.widget) ? this->height() : part.widget->sizeHint().height();
        // Half a pixel lower rather than higher: that is where the middle of the letters is.
        const QRect area(left + part.gap, (this->height() - height + 1) / 2, part.width, height);
        part.widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(), area));
        left += part.extent();
    }
}

} // namespace quelm
