#include "Quelm/EditorWindow/TextPage.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/ParseErrorText.h"
#include "Quelm/EditorWindow/MessageBar.h"
#include "Quelm/EditorWindow/TextPreview.h"

#include <QVBoxLayout>

namespace quelm {

namespace {

QString previewNotice(const TextPreview& preview) {
    if (!preview.isPartial())
        return TextPage::tr("Vista previa de solo lectura.");
    return preview.mark() ? TextPage::tr("Vista previa de solo lectura: se muestra el texto alrededor del error.")
                          : TextPage::tr("Vista previa de solo lectura: se muestra el principio del texto.");
}

} // namespace

TextPage::TextPage(const JSONDocument& document, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    const JSONContent& content = document.content();
    const SharedText text = JSONDocument::fileContents(content);
    if (const auto& error = content.parseError) {
        preview_ = new TextPreview(text, TextPreview::Place{error->offset, error->line});
        errorBar_ = new MessageBar(QStringLiteral("xmark.octagon.fill"), ColorRole::red);
        errorBar_->setText(parseErrorText(*content.parseError));
        layout->addWidget(errorBar_);
    } else {
        preview_ = new TextPreview(text);
    }
    layout->addWidget(preview_, 1);

    auto* notice = new MessageBar(QStringLiteral("info.circle"), ColorRole::secondaryText);
    notice->setText(previewNotice(*preview_));
    layout->addWidget(notice);
    setFocusProxy(preview_);
}

} // namespace quelm
