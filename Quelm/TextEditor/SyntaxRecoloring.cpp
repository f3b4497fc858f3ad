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
//
// Of a long scan only the start is made token by token. The rest is divided into parts that can be coloured each for
// itself, and the runs of a part are derived when they are asked for, from the text as it was at the scan. These are
// the runs that the scan would have given: parts end between tokens, where colours change and no colour depends on what
// follows, and a part with a string that has a line feed is scanned at once.

#include "Quelm/TextEditor/SyntaxRecoloring.h"

#include "Quelm/TextEditor/SyntaxStretch.h"

#include <algorithm>
#include <memory>

namespace quelm {

/// A part of a stretch, in UTF-16 units and bytes.
struct SyntaxRecoloring::Part {
    TextRange units;
    SyntaxDivider::Part part;
};

struct SyntaxRecoloring::Division {
    std::vector<Part> parts;
    /// Where a scan goes on after the parts; their end itself if it has not met with the earlier one.
    qint64 next = 0;
};

SyntaxRecoloring::SyntaxRecoloring(const TextRope& text, const AttributeRuns& old, TextRange lines,
                                   const SyntaxScanSizes& sizes)
    : text_(text), lines_(lines), old_(old), sizes_(sizes), scanner_(text, lines) {
    for (qint64 place = pastSettled(lines.location); place < lines.end();) {
        AttributeRunsBuilder runs;
        const qint64 next = scanFrom(place, runs);
        pieces_.push_back({place, runs.finish()});
        place = next;
    }
}

/// Where a scan has something to do that is between tokens at `place`, where a run starts or the lines do.
qint64 SyntaxRecoloring::pastSettled(qint64 place) const {
    const qint64 settledEnd = old_.settledEnd(place);
    if (settledEnd >= lines_.end())
        return lines_.end();
    return settledEnd == place ? place : std::max(place, old_.runBefore(settledEnd).location);
}

/// Where a scan goes on that is between tokens at `place`: further on if what the earlier one gave is good for a while.
qint64 SyntaxRecoloring::nextToScan(qint64 place) const {
    const qint64 next = pastSettled(place);
    return next == lines_.end() || next - place >= sizes_.leastLeap ? next : place;
}

/// Scans a stretch, and returns where to go on.
qint64 SyntaxRecoloring::scanFrom(qint64 start, AttributeRunsBuilder& runs) {
    scanner_.moveTo(start);
    bool isAiming = false;
    qint64 nearLength = sizes_.leastScan;
    qint64 nearEnd = start + nearLength;
    for (qint64 target = start + 1;;) {
        scanner_.scan(target, runs);
        const qint64 here = scanner_.offset();
        if (here == lines_.end())
            return here;
        const AttributeRuns::PlacedRun met = old_.runAfter(here);
        if (met.location == here) {
            const qint64 next = nextToScan(here);
            if (next != here)
                return next;
        }
        if (here >= nearEnd) {
            const qint64 next = scanFar(runs);
            const qint64 end = scanner_.offset();
            if (next != end)
                return next;
            // What can hardly be divided is seldom tried.
            nearLength = end - here > sizes_.mostInChunk ? sizes_.leastScan : 2 * nearLength;
            nearEnd = end + nearLength;
            target = end + 1;
            continue;
        }
        // A scan that has met with the earlier one also stops where the next run starts. It is seldom asked, so that a
        // long scan which never does costs nothing more.
        isAiming = !isAiming && met.location < here;
        target = isAiming ? met.end() : here + 1 + (here - start) / 8;
        target = std::min(target, nearEnd);
    }
}

/// Scans what can be divided of the text from the scanner's place on, and returns where to go on: the scanner's place,
/// unless the earlier scan was met with.
qint64 SyntaxRecoloring::scanFar(AttributeRunsBuilder& runs) {
    const Division division = divided(scanner_.offset());
    append(division.parts, runs);
    return division.next;
}

/// The parts from `start` on, as far as the earlier scan is not met with.
SyntaxRecoloring::Division SyntaxRecoloring::divided(qint64 start) {
    const qint64 startByte = text_.summaryBeforeUTF16(start).bytes;
    const qint64 endByte = text_.summaryBeforeUTF16(lines_.end()).bytes;
    SyntaxDivider divider(text_, ByteRange::between(startByte, endByte), {sizes_.leastChunk, sizes_.mostInChunk});
    Division division{{}, start};
    bool isAiming = false;
    qint64 target = start;
    while (const auto part = divider.next()) {
        const qint64 end = text_.summaryBefore(part->bytes.end()).utf16;
        division.parts.push_back({TextRange::between(division.next, end), *part});
        division.next = end;
        if (end < target)
            continue;
        // As a rule the run of the earlier scan has to be derived, so this is as seldom done as in a scan by tokens.
        const AttributeRuns::PlacedRun met = old_.runAfter(end);
        if (met.location == end && nextToScan(end) != end) {
            division.next = nextToScan(end);
            break;
        }
        isAiming = !isAiming && met.location < end;
        target = end + (end - start) / 4;
        if (isAiming)
            target = std::min(target, met.end());
    }
    bytesDivided_ += divider.bytesRead();
    return division;
}

/// Appends the runs of parts, the scanner being at the start of the first, and takes it to the end of the last.
void SyntaxRecoloring::append(const std::vector<Part>& parts, AttributeRunsBuilder& runs) {
    if (parts.empty())
        return;
    const Part& first = parts.front();
    const auto bytes = ByteRange::between(first.part.bytes.location, parts.back().part.bytes.end());
    const auto stretch = std::make_shared<const SyntaxStretch>(text_.slice(bytes));
    for (const Part& part : parts) {
        // The first part starts at any place between tokens: its first run may be one with the run before.
        const bool isLeft = &part != &first && part.part.isSettled;
        if (isLeft) {
            runs.append(DerivedChunk{stretch, {part.units.location - first.units.location, part.units.length}});
            continue;
        }
        if (scanner_.offset() != part.units.location)
            scanner_.moveTo(part.units.location);
        scanner_.scan(part.units.end(), runs);
    }
    if (scanner_.offset() != parts.back().units.end())
        scanner_.moveTo(parts.back().units.end());
}

} // namespace quelm
