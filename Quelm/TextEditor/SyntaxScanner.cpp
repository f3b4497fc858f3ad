#include "Quelm/TextEditor/SyntaxScanner.h"

#include "Quelm/TextEditor/EightBytes.h"
#include "Quelm/TextEditor/SyntaxToken.h"
#include "TextCore/Check.h"
#include "TextCore/UTF8.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

/// Larger windows are read only for longer tokens.
constexpr std::size_t largestFreeWindow = std::size_t{128} << 10;

/// A token that does not fit into such a window is likely a string that was left open, and ends with its line: few
/// windows more, since each is read and scanned from the start of the token.
constexpr std::size_t growthForLongTokens = 8;

/// The UTF-16 units of whole characters.
qint64 utf16Count(const char* place, const char* end) {
    qint64 count = 0;
    for (; end - place >= EightBytes::count; place += EightBytes::count)
        count += EightBytes(place).utf16Count();
    for (; place != end; ++place) {
        const auto byte = static_cast<unsigned char>(*place);
        count += (byte & 0xC0) == 0x80 ? 0 : byte < 0xF0 ? 1 : 2;
    }
    return count;
}

} // namespace

SyntaxScanner::SyntaxScanner(TextRope text, TextRange lines)
    : text_(std::move(text)), end_(lines.end()), endByte_(text_.summaryBeforeUTF16(lines.end()).bytes) {
    moveTo(lines.location);
}

void SyntaxScanner::moveTo(qint64 offset) {
    require(0 <= offset && offset <= end_, "a scan stays within its lines");
    offset_ = offset;
    byte_ = text_.summaryBeforeUTF16(offset).bytes;
    window_.clear();
    windowByte_ = byte_;
    nextWindowSize_ = 1;
}

void SyntaxScanner::scan(qint64 target, AttributeRunsBuilder& runs) {
    target = std::min(target, end_);
    while (offset_ < target) {
        scanWindow(target, runs);
        if (offset_ < target)
            readWindow();
    }
}

/// Moves the window to the present place. When the scan could not go on there, what it takes is more text than before.
void SyntaxScanner::readWindow() {
    const auto unscanned = static_cast<std::size_t>(windowByte_ + std::ssize(window_) - byte_);
    const std::size_t growth = unscanned < largestFreeWindow ? 2 : growthForLongTokens;
    std::size_t wanted = std::max(nextWindowSize_, growth * unscanned);
    wanted = std::min(wanted, static_cast<std::size_t>(endByte_ - byte_));

    window_.clear();
    window_.reserve(wanted);
    windowByte_ = byte_;
    qint64 end = byte_;
    while (window_.size() < wanted && end < endByte_) {
        const TextRope::Chunk chunk = text_.chunkAfter(end);
        const std::string_view bytes = chunk.bytes.substr(static_cast<std::size_t>(end - chunk.location));
        window_ += bytes.substr(0, static_cast<std::size_t>(endByte_ - end));
        end = byte_ + std::ssize(window_);
    }
    bytesRead_ += std::ssize(window_);
    nextWindowSize_ = std::min(2 * window_.size(), largestFreeWindow);
    isASCII_ = utf8::isASCII(window_);
}

/// Scans as far as the window's tokens can be told.
void SyntaxScanner::scanWindow(qint64 target, AttributeRunsBuilder& runs) {
    const char* const end = window_.data() + window_.size();
    const char* place = window_.data() + (byte_ - windowByte_);
    const SyntaxTokenReader reader(end, windowByte_ + std::ssize(window_) == endByte_);
    qint64 offset = offset_;
    while (offset < target && place != end) {
        const SyntaxToken token = reader.tokenAt(place);
        if (!token.end)
            break;
        const qint64 length = isASCII_ ? token.end - place : utf16Count(place, token.end);
        runs.append({length, {token.role}, !token.hasLineFeed});
        offset += length;
        place = token.end;
    }
    offset_ = offset;
    byte_ = windowByte_ + (place - window_.data());
}

} // namespace quelm
