#pragma once

#include "Quelm/TextEngine/AttributeRuns.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/TextRope.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <span>

namespace quelm {

/// What an edit of a text storage changed.
enum class EditedMask : std::uint8_t { attributes, characters };

/// A text that is being edited, with the attributes of its characters: the one truth that views, colouring and line
/// numbers follow. Offsets are UTF-16 units, from 0 to `length()`; one within a surrogate pair is taken back to the
/// pair's start. Edits are O(log n) besides the length of what is inserted. For the main thread; a copy of `text()` is
/// a snapshot for any.
class TextStorage : public QObject {
    Q_OBJECT

public:
    explicit TextStorage(TextRope text = {}, QObject* parent = nullptr);

    const TextRope& text() const { return text_; }
    qint64 length() const { return text_.utf16Count(); }

    /// A stretch of the text. O(log n).
    TextRope text(TextRange range) const;
    /// The characters of a stretch. O(length of the stretch).
    QString string(TextRange range) const;

    /// From 1; ever one line more than line feeds.
    qint64 lineCount() const { return text_.lineCount(); }
    /// The line, from 0, that an offset is in.
    qint64 lineAt(qint64 offset) const;
    /// Where a line, from 0, begins.
    qint64 lineStart(qint64 line) const;
    /// A line without the line feed that ends it.
    TextRange lineContents(qint64 line) const;
    /// The lines that the stretch touches, whole, with their line feeds.
    TextRange lineRange(TextRange range) const;

    /// One edit. The new characters have the base attributes. The stretch and `replacement` may both be empty, which is
    /// an edit nonetheless.
    void replaceCharacters(TextRange range, const TextRope& replacement);
    /// The same; lone surrogates become U+FFFD.
    void replaceCharacters(TextRange range, QStringView replacement);

    const AttributeRuns& attributes() const { return attributes_; }
    /// Gives all characters of the stretch the same attributes, not settled.
    void setAttributes(TextRange range, TextAttributes attributes);
    /// Gives adjacent characters, from `location`, the attributes of the runs in order: one edit, whose bounds (also
    /// those between runs) must stand between characters. Without characters, or runs, there is no edit.
    void setAttributes(qint64 location, std::span<const AttributeRun> runs);
    /// The same, however many runs are given.
    void setAttributes(qint64 location, const AttributeRuns& runs);

Q_SIGNALS:
    /// An edit has been made: which kind, the stretch it covers now, and by how much the text grew. Receivers may set
    /// attributes, which announces another edit of that kind, and must not change characters.
    void didProcessEditing(quelm::EditedMask mask, quelm::TextRange range, qint64 delta);

private:
    TextRope text_;
    AttributeRuns attributes_;
    bool isAnnouncingCharacters_ = false;
};

} // namespace quelm
