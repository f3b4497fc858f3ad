// Why parts of a line may be left as they are.
//
// A run is settled if a scan gave it, it has no string with a line feed, and neither it nor a run beside it was edited
// since. Such a run says: a scan that is between tokens where the run starts gives the run these colours, and is
// between tokens again where it ends, whatever came before and wherever the scanned lines end. For
//
// 1. Colours change only between tokens, so a run starts and ends there, and the scan remembers nothing across tokens.
//    Line feeds in settled runs are themselves no part of tokens, so a line that starts within such a run starts
//    between tokens as well.
// 2. The colour of a token depends on its own characters, and for a string also on the blanks after it and the one
//    character that follows them. Blanks are of the base colour, so these are all in the run after the string, or the
//    last is the first character after that run. An edit of them unsettles the run after the string: what a settled run
//    says is certain if the run after it is settled too.
// 3. Strings with a line feed are the only tokens that the end of the scanned lines cuts off, or whose colour depends
//    on what the next line begins with.
//
// So of adjacent settled runs, all but the last are right, and up to the end of the scanned lines the last one as well
// (it has the line feed, or nothing follows). Where the scan is between tokens at the start of such runs, or at the
// start of the lines, it may go straight to the last of them.

#include "Quelm/TextEditor/SyntaxHighlighter.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEditor/SyntaxScanner.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <algorithm>
#include <vector>

namespace quelm {

namespace {

/// The new runs of a stretch.
struct Piece {
    qint64 location = 0;
    AttributeRuns runs;
};

/// One scan of some lines, and the stretches where it had to look.
class Recoloring {
public:
    Recoloring(const TextStorage& storage, TextRange lines)
        : lines_(lines), old_(storage.attributes()), scanner_(storage.text(), lines) {
        for (qint64 place = pastSettled(lines.location); place < lines.end();)
            place = scanFrom(place);
    }

    const std::vector<Piece>& pieces() const { return pieces_; }
    qint64 bytesRead() const { return scanner_.bytesRead(); }

private:
    /// It takes no less to begin a scan elsewhere than to scan about as many units.
    static constexpr qint64 leastLeap = 1024;

    /// Where a scan has something to do that is between tokens at `place`, where a run starts or the lines do.
    qint64 pastSettled(qint64 place) const {
        const qint64 settledEnd = old_.settledEnd(place);
        if (settledEnd >= lines_.end())
            return lines_.end();
        return settledEnd == place ? place : std::max(place, old_.runBefore(settledEnd).location);
    }

    /// Scans a stretch, and returns where to go on.
    qint64 scanFrom(qint64 start) {
        AttributeRunsBuilder runs;
        const qint64 next = scanFrom(start, runs);
        pieces_.push_back({start, runs.finish()});
        return next;
    }

    qint64 scanFrom(qint64 start, AttributeRunsBuilder& runs) {
        scanner_.moveTo(start);
        bool isAiming = false;
        for (qint64 target = start + 1;;) {
            scanner_.scan(target, runs);
            const qint64 here = scanner_.offset();
            if (here == lines_.end())
                return here;
            const AttributeRuns::PlacedRun met = old_.runAfter(here);
            if (met.location == here) {
                const qint64 next = pastSettled(here);
                if (next == lines_.end() || next - here >= leastLeap)
                    return next;
            }
            // A scan that has met with the earlier one also stops where the next run starts. It is seldom asked, so
            // that a long scan which never does costs nothing more.
            isAiming = !isAiming && met.location < here;
            target = isAiming ? met.end() : here + 1 + (here - start) / 8;
        }
    }

    const TextRange lines_;
    const AttributeRuns old_;
    SyntaxScanner scanner_;
    std::vector<Piece> pieces_;
};

} // namespace

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
    const Recoloring recoloring(storage, lines);
    for (const Piece& piece : recoloring.pieces())
        storage.setAttributes(piece.location, piece.runs);
    return recoloring.bytesRead();
}

} // namespace quelm
