#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/SymbolButton.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace quelm {

namespace {

// Everything stands on a grid of 8 points.
int grid(double units) {
    return scaledPixels(8 * units);
}

constexpr int shortestField = 15; // in units of the grid
constexpr int longestField = 45;

QLineEdit* makeField(const QString& name, QWidget* parent) {
    auto* field = new QLineEdit(parent);
    field->setFont(systemFont(TextStyle::body));
    field->setPlaceholderText(name);
    field->setAccessibleName(name);
    field->setFixedHeight(grid(3));
    field->setMinimumWidth(grid(shortestField));
    field->setMaximumWidth(grid(longestField));
    return field;
}

QPushButton* makeButton(const QString& title, const QString& toolTip, QWidget* parent) {
    auto* button = new QPushButton(title, parent);
    button->setFont(systemFont(TextStyle::body));
    button->setFixedHeight(grid(3));
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(title) + grid(3));
    button->setToolTip(toolTip);
    button->setAccessibleName(title);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QLabel* makeLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setFont(monospacedDigitFont(TextStyle::body));
    label->setTextFormat(Qt::PlainText);
    // A long message gives way to the controls.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

} // namespace

void FindBar::makeSearchRow() {
    searchField_ = makeField(tr("Buscar"), this);
    searchSymbol_ = searchField_->addAction(QIcon(), QLineEdit::LeadingPosition);
    countLabel_ = makeLabel(this);
    countLabel_->setMinimumWidth(countLabel_->fontMetrics().horizontalAdvance(tr("Sin resultados")));
    countLabel_->setAccessibleDescription(tr("Resultados de la búsqueda"));
    replaceToggle_ = new SymbolButton(QStringLiteral("chevron.right"), tr("Mostrar reemplazo"), tr("Ctrl+H"), this);
    previousButton_ = new SymbolButton(QStringLiteral("chevron.up"), tr("Anterior"), tr("Mayús+F3"), this);
    nextButton_ = new SymbolButton(QStringLiteral("chevron.down"), tr("Siguiente"), tr("F3"), this);
    caseButton_ = new SymbolButton(QStringLiteral("textformat"), tr("Distinguir mayúsculas"), QString(), this);
    wrapButton_ = new SymbolButton(QStringLiteral("repeat"), tr("Continuar desde el principio"), QString(), this);
    closeButton_ = new SymbolButton(QStringLiteral("xmark"), tr("Cerrar"), tr("Esc"), this);
    caseButton_->setCheckable(true);
    wrapButton_->setCheckable(true);
    wrapButton_->setChecked(search_->wraps());
}

void FindBar::makeReplaceRow() {
    replaceField_ = makeField(tr("Reemplazar por"), this);
    replaceSymbol_ = replaceField_->addAction(QIcon(), QLineEdit::LeadingPosition);
    replaceControls_ = new QWidget(this);
    replaceButton_ = makeButton(tr("Reemplazar"), tr("Reemplazar y pasar al siguiente (Intro)"), replaceControls_);
    replaceAllButton_ =
        makeButton(tr("Reemplazar todo"), tr("Reemplazar todos los resultados (Ctrl+Intro)"), replaceControls_);
    statusLabel_ = makeLabel(replaceControls_);
    statusLabel_->setAccessibleDescription(tr("Estado del reemplazo"));
    replaceField_->hide();
    replaceControls_->hide();
}

void FindBar::layOut() {
    const int gap = grid(0.5);

    auto* searchControls = new QHBoxLayout;
    searchControls->setSpacing(gap);
    searchControls->addWidget(previousButton_);
    searchControls->addWidget(nextButton_);
    searchControls->addSpacing(gap);
    searchControls->addWidget(countLabel_, 1);
    searchControls->addSpacing(gap);
    searchControls->addWidget(caseButton_);
    searchControls->addWidget(wrapButton_);
    searchControls->addSpacing(gap);
    searchControls->addWidget(closeButton_);

    auto* replaceControls = new QHBoxLayout(replaceControls_);
    replaceControls->setContentsMargins({});
    replaceControls->setSpacing(gap);
    replaceControls->addWidget(replaceButton_);
    replaceControls->addWidget(replaceAllButton_);
    replaceControls->addSpacing(gap);
    replaceControls->addWidget(statusLabel_, 1);

    auto* rows = new QGridLayout(this);
    rows->setContentsMargins(grid(1), grid(0.75), grid(1), grid(0.75));
    rows->setHorizontalSpacing(gap);
    rows->setVerticalSpacing(grid(1));
    rows->setColumnStretch(1, 1);
    rows->setColumnStretch(2, 1);
    rows->addWidget(replaceToggle_, 0, 0);
    rows->addWidget(searchField_, 0, 1);
    rows->addLayout(searchControls, 0, 2);
    rows->addWidget(replaceField_, 1, 1);
    rows->addWidget(replaceControls_, 1, 2);

    const QList<QWidget*> order{searchField_, replaceField_, replaceButton_, replaceAllButton_, previousButton_,
                                nextButton_,  caseButton_,   wrapButton_,    replaceToggle_,    closeButton_};
    for (qsizetype index = 1; index < order.size(); ++index)
        setTabOrder(order[index - 1], order[index]);
}

} // namespace quelm
