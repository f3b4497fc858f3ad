#pragma once

#include <QString>

#include <algorithm>
#include <string>

namespace quelm::test {

/// The colours of a text, by a scan of whole lines, unit by unit.
class PlainColors {
public:
    void replace(qsizetype location, qsizetype length, const QString& replacement) {
        text.replace(location, length, replacement);
        letters.replace(static_cast<std::size_t>(location), static_cast<std::size_t>(length),
                        std::string(static_cast<std::size_t>(replacement.size()), '.'));
    }

    void highlight(qsizetype start, qsizetype end, qsizetype longestText) {
        const bool isLong = text.size() > longestText;
        if (!isLong) {
            const qsizetype last = std::max(start, end - 1);
            start = start == 0 ? 0 : text.lastIndexOf(u'\n', start - 1) + 1;
            const qsizetype lineFeed = text.indexOf(u'\n', last);
            end = lineFeed < 0 ? text.size() : lineFeed + 1;
        }
        paint(start, end, '.');
        if (!isLong)
            scan(start, end);
    }

    void paint(qsizetype start, qsizetype end, char color) {
        std::fill(letters.begin() + start, letters.begin() + end, color);
    }

    QString text;
    std::string letters;

private:
    void scan(qsizetype i, qsizetype end) {
        while (i < end) {
            const qsizetype start = i;
            const char16_t unit = text[i].unicode();
            if (unit == u'"') {
                for (++i; i < end;) {
                    const char16_t next = text[i].unicode();
                    i += next == u'\\' ? 2 : 1;
                    if (next == u'"' || next == u'\n')
                        break;
                }
                i = std::min(i, end);
                qsizetype after = i;
                while (after < end && (text[after] == u' ' || text[after] == u'\t'))
                    ++after;
                paint(start, i, after < end && text[after] == u':' ? 'k' : 's');
            } else if (unit == u'-' || isWithin(unit, u'0', u'9')) {
                while (i < end &&
                       (isWithin(text[i].unicode(), u'0', u'9') || QStringLiteral("+-.eE").contains(text[i])))
                    ++i;
                paint(start, i, 'n');
            } else if (isWithin(unit, u'a', u'z')) {
                while (i < end && isWithin(text[i].unicode(), u'a', u'z'))
                    ++i;
                const QString word = text.sliced(start, i - start);
                if (word == QStringLiteral("true") || word == QStringLiteral("false"))
                    paint(start, i, 'b');
                else if (word == QStringLiteral("null"))
                    paint(start, i, 'z');
            } else {
                ++i;
                if (QStringLiteral(",:[]{}").contains(QChar(unit)))
                    paint(start, i, 'p');
            }
        }
    }

    static bool isWithin(char16_t unit, char16_t first, char16_t last) { return first <= unit && unit <= last; }
};

} // namespace quelm::test
