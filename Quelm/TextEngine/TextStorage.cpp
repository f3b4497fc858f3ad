#include "Quelm/TextEngine/TextStorage.h"

#include "TextCore/Check.h"

#include <QScopedValueRollback>

#include <string>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

/// The bytes and units of a stretch, its bounds taken back to characters' starts.
struct Stretch {
    Stretch(const TextRope& text, TextRange range)
        : start(text.summaryBeforeUTF16(range.location)),
          end(range.isEmpty() ? start : text.summaryBeforeUTF16(range.end())) {}

    ByteRange bytes() const { return ByteRange::between(start.bytes, end.bytes); }
    TextRange units() const { return TextRange::between(start.utf16, end.utf16); }

    TextSummary start;
    TextSummary end;
};

} // namespace

TextStorage::TextStorage(TextRope text, QObject* parent)
    : QObject(parent), text_(std::move(text)), attributes_(text_.utf16Count()) {}

TextRope TextStorage::text(TextRange range) const {
    return text_.slice(Stretch(text_, range).bytes());
}

QString TextStorage::string(TextRange range) const {
    // QString's own conversions from Unicode drop a byte-order mark at the front.
    const std::u16string units = text_.utf16(Stretch(text_, range).bytes());
    return QStringView(units).toString();
}

qint64 TextStorage::lineAt(qint64 offset) const {
    return text_.summaryBeforeUTF16(offset).lineFeeds;
}

qint64 TextStorage::lineStart(qint64 line) const {
    return text_.summaryBeforeLine(line).utf16;
}

TextRange TextStorage::lineContents(qint64 line) const {
    const qint64 end = line + 1 < lineCount() ? lineStart(line + 1) - 1 : length();
    return TextRange::between(lineStart(line), end);
}

TextRange TextStorage::lineRange(TextRange range) const {
    const qint64 first = lineAt(range.location);
    const qint64 last = range.isEmpty() ? first : lineAt(range.end() - 1);
    return TextRange::between(lineStart(first), last + 1 < lineCount() ? lineStart(last + 1) : length());
}

void TextStorage::replaceCharacters(TextRange range, const TextRope& replacement) {
    require(!isAnnouncingCharacters_, "receivers of an edit of characters do not change characters");
    const Stretch replaced(text_, range);
    const TextRange edited{replaced.units().location, replacement.utf16Count()};
    text_ = text_.replacing(replaced.bytes(), replacement);
    attributes_.replace(replaced.units(), edited.length);

    const QScopedValueRollback announcing(isAnnouncingCharacters_, true);
    Q_EMIT didProcessEditing(EditedMask::characters, edited, edited.length - replaced.units().length);
}

void TextStorage::replaceCharacters(TextRange range, QStringView replacement) {
    const std::u16string_view units(replacement.utf16(), static_cast<std::size_t>(replacement.size()));
    replaceCharacters(range, TextRope::repairing(units));
}

void TextStorage::setAttributes(TextRange range, TextAttributes attributes) {
    const TextRange units = Stretch(text_, range).units();
    if (units.isEmpty())
        return;
    const AttributeRun run{units.length, attributes, false};
    setAttributes(units.location, std::span(&run, 1));
}

void TextStorage::setAttributes(qint64 location, std::span<const AttributeRun> runs) {
    AttributeRunsBuilder given;
    for (const AttributeRun& run : runs)
        given.append(run);
    setAttributes(location, given.finish());
}

void TextStorage::setAttributes(qint64 location, const AttributeRuns& runs) {
    if (runs.length() == 0)
        return;
    attributes_.set(location, runs);
    Q_EMIT didProcessEditing(EditedMask::attributes, {location, runs.length()}, 0);
}

} // namespace quelm
