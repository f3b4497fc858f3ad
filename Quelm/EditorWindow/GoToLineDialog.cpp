#include "Quelm/EditorWindow/GoToLineDialog.h"

#include "Quelm/Foundation/Fonts.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace quelm {

GoToLineDialog::GoToLineDialog(const QString& input, QWidget* parent) : QDialog(parent), field_(new QLineEdit(input)) {
    setWindowTitle(tr("Ir a línea"));
    field_->setPlaceholderText(tr("Número de línea"));
    field_->setAccessibleName(tr("Número de línea"));
    field_->setMinimumWidth(scaledPixels(240));
    field_->selectAll();

    auto* buttons = new QDialogButtonBox;
    buttons->addButton(tr("Cancelar"), QDialogButtonBox::RejectRole);
    QPushButton* accept = buttons->addButton(tr("Aceptar"), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    const int margin = scaledPixels(16);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    layout->addWidget(field_);
    layout->addWidget(buttons);
    // Only a button of the dialog can be its default.
    accept->setDefault(true);
    // There is nothing to be gained from another size.
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QString GoToLineDialog::input() const {
    return field_->text();
}

std::int64_t GoToLineDialog::line(const QString& input) {
    const QByteArray utf8 = input.toUtf8();
    std::string_view digits(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
        if (digits.starts_with('-'))
            return 1;
    }
    std::int64_t number = 1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size())
        return 1;
    return std::max<std::int64_t>(number, 1);
}

} // namespace quelm
