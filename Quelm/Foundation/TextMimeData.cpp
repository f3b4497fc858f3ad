#include "Quelm/Foundation/TextMimeData.h"

#include "TextCore/UTF16.h"

namespace quelm {

namespace {

QString plainText() {
    return QStringLiteral("text/plain");
}

} // namespace

bool TextMimeData::hasFormat(const QString& mimeType) const {
    return mimeType == plainText();
}

QStringList TextMimeData::formats() const {
    return {plainText()};
}

QVariant TextMimeData::retrieveData(const QString& mimeType, QMetaType preferredType) const {
    if (mimeType != plainText())
        return {};
    if (preferredType.id() == QMetaType::QByteArray)
        return QByteArray::fromStdString(text_.bytes({0, text_.byteCount()}));
    return string();
}

QString TextMimeData::string() const {
    QString string;
    string.reserve(text_.utf16Count());
    // QString's own conversions from Unicode drop a byte-order mark at the front.
    std::u16string units;
    text_.forEachChunk({0, text_.byteCount()}, [&string, &units](std::string_view bytes) {
        units.clear();
        utf16::append(units, bytes);
        string.append(QStringView(units));
    });
    return string;
}

} // namespace quelm
