#include "Quelm/Foundation/ToolTipText.h"

#include "Quelm/Foundation/VisibleText.h"

#include <QStringList>
#include <QTextBoundaryFinder>

namespace quelm {

namespace {

constexpr std::int64_t mostCharacters = 400;
constexpr int lineLength = 80;

/// The length in UTF-16 units of the first line of a text: up to `lineLength` characters, after a space if there is one
/// in the second half. Long values often have none.
qsizetype firstLineLength(const QString& text) {
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    for (int characters = 0; characters < lineLength; ++characters) {
        if (boundaries.toNextBoundary() == -1)
            return text.size();
    }
    const qsizetype full = boundaries.position();
    if (full == text.size())
        return full;
    const qsizetype space = text.lastIndexOf(u' ', full - 1);
    return space > full / 2 ? space + 1 : full;
}

QStringList brokenLines(QString text) {
    QStringList lines;
    while (!text.isEmpty()) {
        const qsizetype length = firstLineLength(text);
        lines += text.left(length);
        text.remove(0, length);
    }
    return lines;
}

} // namespace

QString toolTipText(std::string_view utf8) {
    const QStringList lines = brokenLines(visibleText(utf8, mostCharacters).text);
    return QStringLiteral("<div style=\"white-space:pre\">%1</div>").arg(lines.join(u'\n').toHtmlEscaped());
}

} // namespace quelm
