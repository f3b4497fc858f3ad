#include "Quelm/EditorWindow/TextPage.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/ParseErrorText.h"
#include "Quelm/EditorWindow/MessageBar.h"
#include "Quelm/EditorWindow/TextPreview.h"

#include <QVBoxLayout>

namespace quelm {

namespace {

QString previewNotice(const TextPreview& preview) {
    return preview.isPartial() ? TextPage::tr("Vista previa de solo lectura: se muestra el principio del texto.")
                               : TextPage::tr("Vista previa de solo lectura.");
}

} // namespace

TextPage::TextPage(const JSONDocument& document, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    const JSONContent& content = document.content();
    preview_ = new TextPreview(JSONDocument::fileContents(content));
    if (content.parseError) {
        errorBar_ = new MessageBar(QStringLiteral("xmark.octagon.fill"), ColorRole::red);
        errorBar_->setText(parseErrorText(*content.parseError));
        layout->addWidget(errorBar_);
        preview_->markLine(content.parseError->line);
    }
    layout->addWidget(preview_, 1);

    auto* notice = new MessageBar(QStringLiteral("info.circle"), ColorRole::secondaryText);
    notice->setText(previewNotice(*preview_));
    layout->addWidget(notice);
    setFocusProxy(preview_);
}

} // namespace quelm
