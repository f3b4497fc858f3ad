#include "Quelm/Application/SettingsView.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/Preferences.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quelm {

namespace {

using Preferences::InitialMode;

QString title(JSONStyle::Indent indent) {
    switch (indent) {
    case JSONStyle::Indent::twoSpaces:
        break;
    case JSONStyle::Indent::fourSpaces:
        return SettingsView::tr("4 espacios");
    case JSONStyle::Indent::tab:
        return SettingsView::tr("Tabulador");
    }
    return SettingsView::tr("2 espacios");
}

QString title(InitialMode mode) {
    switch (mode) {
    case InitialMode::automatic:
        break;
    case InitialMode::tree:
        return SettingsView::tr("Árbol");
    case InitialMode::text:
        return SettingsView::tr("Texto (formato original)");
    }
    return SettingsView::tr("Árbol si es válido, si no Texto");
}

/// The heading's weight is not for what is below it.
template <class Control>
Control* inBodyFont(Control* control) {
    control->setFont(systemFont(TextStyle::body));
    return control;
}

/// A choice among the values, which its items carry.
template <class Values>
QComboBox* makePicker(const Values& values) {
    auto* picker = new QComboBox;
    for (const auto value : values)
        picker->addItem(title(value), static_cast<int>(value));
    return inBodyFont(picker);
}

template <class Value>
Value chosenValue(const QComboBox& picker) {
    return static_cast<Value>(picker.currentData().toInt());
}

template <class Value>
void showValue(QComboBox& picker, Value value) {
    const QSignalBlocker notChosen(picker);
    picker.setCurrentIndex(picker.findData(static_cast<int>(value)));
}

QGroupBox* makeSection(const QString& heading) {
    auto* section = new QGroupBox(heading);
    section->setFont(systemFont(TextStyle::body, QFont::DemiBold));
    return section;
}

QFormLayout* makeForm(QGroupBox& section) {
    auto* form = new QFormLayout(&section);
    const int edge = scaledPixels(14);
    form->setContentsMargins(edge, edge, edge, edge);
    form->setHorizontalSpacing(scaledPixels(12));
    form->setVerticalSpacing(scaledPixels(10));
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    return form;
}

void addPicker(QFormLayout& form, const QString& label, QComboBox& picker) {
    auto* words = inBodyFont(new QLabel(label));
    words->setBuddy(&picker);
    form.addRow(words, &picker);
}

} // namespace

SettingsView::SettingsView(QWidget* parent)
    : QWidget(parent), indent_(makePicker(JSONStyle::allIndents)),
      sortsKeys_(inBodyFont(new QCheckBox(tr("Ordenar claves alfabéticamente")))),
      initialMode_(makePicker(Preferences::allInitialModes)) {
    setWindowTitle(tr("Preferencias"));

    auto* layout = new QVBoxLayout(this);
    const int edge = scaledPixels(20);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(scaledPixels(16));
    layout->addWidget(makeWritingSection());
    layout->addWidget(makeOpeningSection());
    layout->setSizeConstraint(QLayout::SetFixedSize);
    alignLabels();

    closeOn(Qt::Key_Escape);
    closeOn(Qt::CTRL | Qt::Key_W);
    showStoredValues();
}

QGroupBox* SettingsView::makeWritingSection() {
    QGroupBox* section = makeSection(tr("Embellecer y exportar"));
    QFormLayout* form = makeForm(*section);
    addPicker(*form, tr("Sangría"), *indent_);
    form->addRow(QString(), sortsKeys_);
    connect(indent_, &QComboBox::currentIndexChanged, this,
            [this] { Preferences::setIndent(chosenValue<JSONStyle::Indent>(*indent_)); });
    connect(sortsKeys_, &QCheckBox::toggled, this, &Preferences::setSortsKeys);
    return section;
}

QGroupBox* SettingsView::makeOpeningSection() {
    QGroupBox* section = makeSection(tr("Al abrir un archivo"));
    addPicker(*makeForm(*section), tr("Mostrar en"), *initialMode_);
    connect(initialMode_, &QComboBox::currentIndexChanged, this,
            [this] { Preferences::setInitialMode(chosenValue<InitialMode>(*initialMode_)); });
    return section;
}

/// Forms of their own would begin their fields each at another place.
void SettingsView::alignLabels() {
    const QList<QLabel*> labels = findChildren<QLabel*>();
    int width = 0;
    for (const QLabel* label : labels)
        width = std::max(width, label->sizeHint().width());
    for (QLabel* label : labels)
        label->setMinimumWidth(width);
}

void SettingsView::closeOn(const QKeySequence& keys) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, &QWidget::close);
}

void SettingsView::showEvent(QShowEvent* event) {
    showStoredValues();
    if (!std::exchange(wasShown_, true))
        centerOverActiveWindow();
    QWidget::showEvent(event);
}

void SettingsView::centerOverActiveWindow() {
    const QWidget* active = QApplication::activeWindow();
    if (!active || active == this)
        return;
    QRect place = rect();
    place.moveCenter(active->geometry().center());
    const QRect screen = active->screen()->availableGeometry();
    move(std::max(std::min(place.left(), screen.right() - place.width()), screen.left()),
         std::max(std::min(place.top(), screen.bottom() - place.height()), screen.top()));
}

void SettingsView::showStoredValues() {
    showValue(*indent_, Preferences::indent());
    showValue(*initialMode_, Preferences::initialMode());
    const QSignalBlocker notChosen(*sortsKeys_);
    sortsKeys_->setChecked(Preferences::sortsKeys());
}

} // namespace quelm
