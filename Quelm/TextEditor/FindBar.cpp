#include "Quelm/TextEditor/FindBar.h"

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"
#include "Quelm/TextEditor/SymbolButton.h"
#include "Quelm/TextEngine/TextView.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPushButton>

namespace quelm {

namespace {

QString number(qint64 value) {
    constexpr qint64 million = 1'000'000;
    if (value < million)
        return QLocale().toString(value);
    // Where numbers of four digits are written together, as in Spanish, Qt 6.4 leaves out later separators too.
    QString digits = QString::number(value);
    for (qsizetype place = digits.size() - 3; place > 0; place -= 3)
        digits.insert(place, QLocale().groupSeparator());
    return digits;
}

bool isPlainOrShift(const QKeyEvent& event) {
    return !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
}

} // namespace

FindBar::FindBar(TextView& view, QWidget* parent)
    : QWidget(parent), view_(&view), search_(new TextSearch(view, this)),
      replacing_(new TextReplacing(view, *search_, this)) {
    makeSearchRow();
    makeReplaceRow();
    layOut();
    updateColors();
    connectParts();
    updateState();
    hide();
}

FindBar::~FindBar() = default;

void FindBar::connectParts() {
    connect(searchField_, &QLineEdit::textChanged, this, &FindBar::updateQuery);
    connect(caseButton_, &SymbolButton::toggled, this, &FindBar::updateQuery);
    connect(wrapButton_, &SymbolButton::toggled, search_, &TextSearch::setWraps);
    connect(previousButton_, &SymbolButton::clicked, this, &FindBar::findPrevious);
    connect(nextButton_, &SymbolButton::clicked, this, &FindBar::findNext);
    connect(closeButton_, &SymbolButton::clicked, this, &FindBar::closeBar);
    connect(replaceToggle_, &SymbolButton::clicked, this, &FindBar::toggleReplaceRow);
    connect(replaceButton_, &QPushButton::clicked, this, &FindBar::replaceSelectedMatch);
    connect(replaceAllButton_, &QPushButton::clicked, this, &FindBar::replaceAll);

    connect(search_, &TextSearch::changed, this, &FindBar::updateState);
    connect(search_, &TextSearch::found, this, &FindBar::updateState);
    connect(search_, &TextSearch::notFound, this, &FindBar::showNothingFound);
    connect(replacing_, &TextReplacing::didStart, this, [this] {
        statusLabel_->setText(tr("Reemplazando…"));
        updateState();
    });
    connect(replacing_, &TextReplacing::didReplaceAll, this, [this](qint64 count) {
        statusLabel_->setText(count == 1 ? tr("1 reemplazo") : tr("%1 reemplazos").arg(number(count)));
        updateState();
    });
    connect(replacing_, &TextReplacing::didFindTooLong, this, [this] {
        statusLabel_->setText(tr("El texto quedaría demasiado largo: no se ha reemplazado nada"));
        updateState();
    });

    connect(replacing_, &TextReplacing::didEndWithReadOnlyText, this, [this] {
        statusLabel_->setText(tr("Reemplazo cancelado"));
        updateState();
    });
    connect(view_, &TextView::readOnlyDidChange, this, &FindBar::updateState);

    // What was replaced is told until something else is done.
    const auto forget = [this] {
        if (!replacing_->isReplacingAll())
            statusLabel_->clear();
    };
    connect(replaceField_, &QLineEdit::textChanged, this, forget);
    connect(view_, &TextView::textDidChange, this, forget);

    searchField_->installEventFilter(this);
    replaceField_->installEventFilter(this);
    view_->installEventFilter(this);
}

// Opening and closing.

void FindBar::openFind() {
    if (!view_)
        return;
    takeSelectionAsQuery();
    show();
    search_->setFollowing(true);
    searchField_->setFocus(Qt::ShortcutFocusReason);
    searchField_->selectAll();
    updateState();
}

void FindBar::openReplace() {
    const bool isQueryKnown = isVisible() && search_->pattern();
    setReplaceRowVisible(true);
    openFind();
    if (isQueryKnown)
        replaceField_->setFocus(Qt::ShortcutFocusReason);
}

void FindBar::closeBar() {
    search_->stopFinding();
    search_->setFollowing(false);
    replacing_->cancel();
    statusLabel_->clear();
    // Before the focus could go to a neighbour.
    if (view_)
        view_->setFocus(Qt::OtherFocusReason);
    hide();
}

void FindBar::takeSelectionAsQuery() {
    const TextRange selection = view_->selectedRange();
    // From within the bar the selection is what was found, which may be written otherwise than the query.
    if (selection.isEmpty() || selection.length > longestQuery || isAncestorOf(QApplication::focusWidget()))
        return;
    const QString text = view_->textStorage().string(selection);
    if (text.contains(u'\n'))
        return;
    const QSignalBlocker blocker(searchField_);
    searchField_->setText(text);
    search_->setQuery(
        {searchField_->text(), caseButton_->isChecked() ? CaseSensitivity::sensitive : CaseSensitivity::insensitive});
}

bool FindBar::isReplaceRowVisible() const {
    return replaceField_->isVisibleTo(this);
}

void FindBar::setReplaceRowVisible(bool visible) {
    if (visible == isReplaceRowVisible())
        return;
    replaceField_->setVisible(visible);
    replaceControls_->setVisible(visible);
    statusLabel_->clear();
    replaceToggle_->setSymbol(visible ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"));
    replaceToggle_->setName(visible ? tr("Ocultar reemplazo") : tr("Mostrar reemplazo"),
                            visible ? QString() : tr("Ctrl+H"));
}

void FindBar::toggleReplaceRow() {
    setReplaceRowVisible(!isReplaceRowVisible());
    (isReplaceRowVisible() ? replaceField_ : searchField_)->setFocus(Qt::OtherFocusReason);
}

// What it does.

void FindBar::updateQuery() {
    statusLabel_->clear();
    replacing_->cancel();
    search_->setQuery(
        {searchField_->text(), caseButton_->isChecked() ? CaseSensitivity::sensitive : CaseSensitivity::insensitive});
    search_->findWhileTyping();
}

void FindBar::findNext() {
    if (!search_->pattern())
        openFind();
    else
        search_->findNext();
}

void FindBar::findPrevious() {
    if (!search_->pattern())
        openFind();
    else
        search_->findPrevious();
}

void FindBar::replaceSelectedMatch() {
    if (!replaceButton_->isEnabled())
        return;
    statusLabel_->clear();
    replacing_->replaceSelectedMatch(replaceField_->text());
}

void FindBar::replaceAll() {
    if (replaceAllButton_->isEnabled())
        replacing_->replaceAll(replaceField_->text());
}

bool FindBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (handleKey(key) || (watched != view_ && handleFieldKey(watched, key)))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool FindBar::handleKey(const QKeyEvent& event) {
    if (event.key() == Qt::Key_F3 && isPlainOrShift(event)) {
        if (event.modifiers() & Qt::ShiftModifier)
            findPrevious();
        else
            findNext();
        return true;
    }
    if (event.modifiers() != Qt::ControlModifier)
        return false;
    if (event.key() == Qt::Key_F)
        openFind();
    else if (event.key() == Qt::Key_H)
        openReplace();
    else
        return false;
    return true;
}

bool FindBar::handleFieldKey(const QObject* field, const QKeyEvent& event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)
        return false;
    if (event.modifiers() & Qt::ShiftModifier)
        findPrevious();
    else if (field == searchField_)
        findNext();
    else if (event.modifiers() & Qt::ControlModifier)
        replaceAll();
    else
        replaceSelectedMatch();
    return true;
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    // What its buttons have no use for.
    if (event->key() == Qt::Key_Escape)
        closeBar();
    else if (!handleKey(*event))
        QWidget::keyPressEvent(event);
}

// How it looks.

void FindBar::updateState() {
    const bool canFind = search_->pattern().has_value() && search_->count() != 0;
    const bool canReplace = canFind && view_ && !view_->isReadOnly() && !replacing_->isReplacingAll();
    previousButton_->setEnabled(canFind);
    nextButton_->setEnabled(canFind);
    replaceButton_->setEnabled(canReplace);
    replaceAllButton_->setEnabled(canReplace);
    updateCount();
}

void FindBar::updateCount() {
    const bool hasNone = search_->pattern() && search_->count() == 0;
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText,
                    semanticColor(hasNone ? ColorRole::red : ColorRole::secondaryText, appearanceOf(palette())));
    countLabel_->setPalette(colors);

    // A count that takes a moment only leaves the last one where it is.
    const bool isKnown = !search_->pattern() || search_->count() || search_->countingProgress();
    if (isKnown)
        countLabel_->setText(countText());
}

void FindBar::showNothingFound() {
    updateState();
    if (search_->pattern() && search_->count() != 0)
        countLabel_->setText(search_->wraps() ? tr("Sin resultados") : tr("No hay más resultados"));
}

QString FindBar::countText() const {
    if (!search_->pattern())
        return {};
    const auto count = search_->count();
    if (!count)
        return tr("Buscando… %1 %").arg(static_cast<int>(search_->countingProgress().value_or(0) * 100));
    if (*count == 0)
        return tr("Sin resultados");
    if (const auto current = search_->currentNumber())
        return tr("%1 de %2").arg(number(*current), number(*count));
    return *count == 1 ? tr("1 resultado") : tr("%1 resultados").arg(number(*count));
}

void FindBar::updateColors() {
    searchSymbol_->setIcon(symbolIcon(QStringLiteral("magnifyingglass"), ColorRole::secondaryText));
    replaceSymbol_->setIcon(symbolIcon(QStringLiteral("pencil.line"), ColorRole::secondaryText));
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, semanticColor(ColorRole::secondaryText, appearanceOf(palette())));
    statusLabel_->setPalette(colors);
    updateCount();
}

void FindBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor line = semanticColor(ColorRole::separator, appearanceOf(palette()));
    painter.fillRect(QRect(0, height() - 1, width(), 1), line);
}

void FindBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange && statusLabel_)
        updateColors();
    QWidget::changeEvent(event);
}

} // namespace quelm
