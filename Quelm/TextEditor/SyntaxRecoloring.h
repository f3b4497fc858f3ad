#pragma once

#include "Quelm/TextEditor/SyntaxDivider.h"
#include "Quelm/TextEditor/SyntaxScanner.h"
#include "Quelm/TextEngine/AttributeRuns.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/TextRope.h"

#include <vector>

namespace quelm {

/// What a scan makes of long stretches. The colours are the same with any.
struct SyntaxScanSizes {
    /// It takes no less to begin a scan elsewhere than to scan about as many units.
    qint64 leastLeap = 1024;
    /// Units that are scanned token by token before the colours of what follows are left to be derived.
    qint64 leastScan = qint64{32} << 10;
    /// Bytes whose colours are derived together, at least. It bounds what a look at one of them costs.
    qint64 leastChunk = qint64{8} << 10;
    /// There are more if it takes much to find a place to divide the text at, as within a long string. Where it would
    /// take more than this many, which likely are of few colours, the scan goes on token by token.
    qint64 mostInChunk = qint64{64} << 10;
};

/// One scan of some lines, and the stretches where it had to look.
class SyntaxRecoloring {
public:
    /// `old` are the attributes of `text` before.
    SyntaxRecoloring(const TextRope& text, const AttributeRuns& old, TextRange lines, const SyntaxScanSizes& sizes);

    /// The new runs of a stretch.
    struct Piece {
        qint64 location = 0;
        AttributeRuns runs;
    };
    const std::vector<Piece>& pieces() const { return pieces_; }
    qint64 bytesRead() const { return scanner_.bytesRead() + bytesDivided_; }

private:
    struct Part;
    struct Division;

    qint64 pastSettled(qint64 place) const;
    qint64 nextToScan(qint64 place) const;
    qint64 scanFrom(qint64 start, AttributeRunsBuilder& runs);
    qint64 scanFar(AttributeRunsBuilder& runs);
    Division divided(qint64 start);
    void append(const std::vector<Part>& parts, AttributeRunsBuilder& runs);

    const TextRope text_;
    const TextRange lines_;
    const AttributeRuns old_;
    const SyntaxScanSizes sizes_;
    SyntaxScanner scanner_;
    qint64 bytesDivided_ = 0;
    std::vector<Piece> pieces_;
};

} // namespace quelm
