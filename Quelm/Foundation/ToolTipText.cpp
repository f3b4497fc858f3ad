#include "Quelm/Foundation/ToolTipText.h"

#include "Quelm/Foundation/VisibleText.h"

#include <QStringList>
#include <QTextBoundaryFinder>

namespace quelm {

namespace {

constexpr std::int64_t mostCharacters = 400;
constexpr int lineLength = 80;

/// Lines of at most `lineLength` characters, broken wherever they are full: long values seldom have spaces.
QStringList brokenLines(const QString& text) {
    QStringList lines;
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (int characters = 1; boundaries.toNextBoundary() != -1; ++characters) {
        if (characters % lineLength == 0) {
            lines += text.mid(start, boundaries.position() - start);
            start = boundaries.position();
        }
    }
    if (start < text.size())
        lines += text.mid(start);
    return lines;
}

} // namespace

QString toolTipText(std::string_view utf8) {
    const QStringList lines = brokenLines(visibleText(utf8, mostCharacters).text);
    return QStringLiteral("<div style=\"white-space:pre\">%1</div>").arg(lines.join(u'\n').toHtmlEscaped());
}

} // namespace quelm
