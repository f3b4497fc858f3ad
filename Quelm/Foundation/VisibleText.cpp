#include "Quelm/Foundation/VisibleText.h"

#include "TextCore/Graphemes.h"

#include <QStringDecoder>

namespace quelm {

namespace {

/// A cluster may be of any length; real texts have no more bytes a character than this, and a few longer ones.
constexpr std::size_t bytesPerCharacter = 16;
constexpr std::size_t bytesForLongOnes = 1024;

constexpr QChar lineBreakSign(u'⏎');
constexpr QChar tabSign(u'⇥');
constexpr char16_t firstControlPicture = u'␀';
constexpr QChar deletePicture(u'␡');

std::string_view prefixOfBytes(std::string_view text, std::size_t limit) {
    if (text.size() <= limit)
        return text;
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80)
        --limit;
    return text.substr(0, limit);
}

/// Controls without a picture that change the direction or the place of what follows.
constexpr bool isUnseenControl(char16_t unit) {
    return (unit >= 0x80 && unit < 0xA0) || unit == 0x061C || unit == 0x200E || unit == 0x200F ||
           (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF;
}

void appendVisible(QString& out, QChar character) {
    const char16_t unit = character.unicode();
    if (unit == u'\n' || unit == 0x2028 || unit == 0x2029)
        out += lineBreakSign;
    else if (unit == u'\t')
        out += tabSign;
    else if (unit < 0x20)
        out += QChar(static_cast<char16_t>(firstControlPicture + unit));
    else if (unit == 0x7F)
        out += deletePicture;
    else if (isUnseenControl(unit))
        out += QStringLiteral("\\u") + QStringLiteral("%1").arg(uint{unit}, 4, 16, QLatin1Char('0')).toUpper();
    else
        out += character;
}

} // namespace

QString visibleCharacters(QStringView text) {
    QString visible;
    visible.reserve(text.size());
    for (const QChar character : text)
        appendVisible(visible, character);
    return visible;
}

VisibleText visibleText(std::string_view utf8, std::int64_t characters) {
    const std::size_t byteLimit = static_cast<std::size_t>(characters) * bytesPerCharacter + bytesForLongOnes;
    const std::string_view prefix = graphemes::prefix(prefixOfBytes(utf8, byteLimit), characters);
    // A byte-order mark is a character like any other here; a plain conversion would swallow it.
    QStringDecoder decode(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    const QString text = decode(QByteArrayView(prefix.data(), static_cast<qsizetype>(prefix.size())));
    VisibleText visible;
    visible.text = visibleCharacters(text);
    visible.isCut = prefix.size() < utf8.size();
    if (visible.isCut)
        visible.text += u'…';
    return visible;
}

} // namespace quelm
