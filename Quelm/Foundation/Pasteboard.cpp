#include "Quelm/Foundation/Pasteboard.h"

#include "Quelm/Foundation/TextMimeData.h"

#include <QClipboard>
#include <QGuiApplication>

#include <string_view>

namespace quelm {

namespace {

class SystemClipboard : public Pasteboard {
public:
    std::optional<TextRope> string() const override {
        const QMimeData* data = QGuiApplication::clipboard()->mimeData();
        if (const auto* own = qobject_cast<const TextMimeData*>(data))
            return own->rope();
        if (!data || !data->hasText())
            return std::nullopt;
        const QString text = data->text();
        return TextRope::repairing(
            std::u16string_view(QStringView(text).utf16(), static_cast<std::size_t>(text.size())));
    }

    void setString(const TextRope& text) override { QGuiApplication::clipboard()->setMimeData(new TextMimeData(text)); }
};

} // namespace

Pasteboard& Pasteboard::general() {
    static SystemClipboard clipboard;
    return clipboard;
}

} // namespace quelm
