#include "Quelm/TextEditor/SyntaxHighlighter.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEngine/TextStorage.h"

namespace quelm {

const QFont& SyntaxHighlighter::textFont() {
    static const QFont font = monospacedFont(TextStyle::body);
    return font;
}

qint64 SyntaxHighlighter::highlight(TextStorage& storage, TextRange range, qint64 longestText) const {
    const TextRange within = TextRange{0, storage.length()}.intersection(range);
    if (storage.length() > longestText) {
        storage.setAttributes(within, {});
        return 0;
    }
    const TextRange lines = storage.lineRange(within);
    if (lines.isEmpty())
        return 0;
    const SyntaxRecoloring recoloring(storage.text(), storage.attributes(), lines, sizes_);
    for (const SyntaxRecoloring::Piece& piece : recoloring.pieces())
        storage.setAttributes(piece.location, piece.runs);
    return recoloring.bytesRead();
}

} // namespace quelm
