#include "JSONCore/JSONWriter.h"

#include "JSONCore/JSONEscapes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace quelm {

namespace {

constexpr std::size_t chunk = 16;

/// Copies in whole chunks: up to `chunk` - 1 bytes more than asked for are read and written. Most texts of JSON are
/// short, and a copy of fixed size costs less than a call.
[[gnu::always_inline]] inline char* copyInChunks(char* to, const char* from, std::size_t count) {
    std::memcpy(to, from, chunk);
    for (std::size_t at = chunk; at < count; at += chunk) [[unlikely]]
        std::memcpy(to + at, from + at, chunk);
    return to + count;
}

/// What follows the backslash when a byte is escaped, 'u' for those that need a code; 0 for bytes that stand as they
/// are.
constexpr std::array<char, 256> escapeLetters = [] {
    std::array<char, 256> letters{};
    for (unsigned byte = 0; byte < letters.size(); ++byte)
        letters[byte] = json::needsEscape(static_cast<unsigned char>(byte)) ? 'u' : '\0';
    letters['\b'] = 'b';
    letters['\t'] = 't';
    letters['\n'] = 'n';
    letters['\f'] = 'f';
    letters['\r'] = 'r';
    letters['"'] = '"';
    letters['\\'] = '\\';
    return letters;
}();

constexpr std::size_t longestEscape = 6;

} // namespace

JSONWriter::JSONWriter(const TreeStorage& storage, std::string_view indentUnit, bool sortKeys)
    : storage_(storage), indentUnit_(indentUnit), sortKeys_(sortKeys) {
    constexpr std::size_t levels = 64;
    if (isPretty()) {
        lineBreak_ = "\n";
        for (std::size_t level = 0; level < levels; ++level)
            lineBreak_ += indentUnit_;
        lineBreak_.append(chunk, ' '); // read, never meant
    }
}

std::size_t JSONWriter::expectedSize(NodeID start) const {
    const std::size_t nodeCount = storage_.record(start).subtreeSize();
    // A large tree has about the length of its source beside its structure.
    constexpr std::size_t manyNodes = 1000;
    const std::size_t texts = nodeCount > manyNodes ? storage_.source.size() : 0;
    return nodeCount * (isPretty() ? 24 : 16) + texts;
}

SharedText JSONWriter::write(NodeID start) {
    // Room that is not used costs nothing, and growing copies.
    writeInto(TextBuilder(expectedSize(start)), start);
    return output_.finish();
}

void JSONWriter::write(NodeID start, const std::function<void(std::string_view)>& take) {
    constexpr std::size_t pieceSize = std::size_t{1} << 20;
    take_ = &take;
    writeInto(TextBuilder(pieceSize), start);
    take({output_.data(), output_.size()});
}

void JSONWriter::writeInto(TextBuilder output, NodeID start) {
    output_ = std::move(output);
    char* at = output_.room(0);
    limit_ = at + output_.available();

    at = writeValue(at, storage_.record(start));
    bool isFirst = true;
    while (!open_.empty()) {
        Frame& frame = open_.back();
        if (!frame.hasNext()) {
            at = closeContainer(at);
            isFirst = false;
            continue;
        }
        at = needRoom(at, 1);
        *at = ',';
        at += !isFirst;
        if (isPretty())
            at = writeLineBreak(at, open_.size());
        const NodeID child = frame.nextSorted != frame.endSorted ? sorted_[frame.nextSorted++] : *frame.next++;
        const std::size_t depth = open_.size();
        at = writeMemberOrElement(at, child, frame.isObject);
        isFirst = open_.size() > depth;
    }
    if (isPretty()) {
        at = needRoom(at, 1);
        *at++ = '\n';
    }
    output_.advance(static_cast<std::size_t>(at - output_.room(0)));
}

[[gnu::always_inline]] inline char* JSONWriter::needRoom(char* at, std::size_t count) {
    return static_cast<std::size_t>(limit_ - at) < count ? makeRoom(at, count) : at;
}

[[gnu::noinline]] char* JSONWriter::makeRoom(char* at, std::size_t count) {
    output_.advance(static_cast<std::size_t>(at - output_.room(0)));
    if (take_) {
        (*take_)({output_.data(), output_.size()});
        output_.clear();
    }
    at = output_.room(count);
    limit_ = at + output_.available();
    return at;
}

[[gnu::always_inline]] inline char* JSONWriter::writeMemberOrElement(char* at, NodeID id, bool hasKey) {
    const NodeRecord& record = storage_.record(id);
    if (hasKey) {
        at = writeString(at, record.key());
        at = needRoom(at, 2);
        *at++ = ':';
        *at = ' ';
        at += isPretty();
    }
    return writeValue(at, record);
}

[[gnu::always_inline]] inline char* JSONWriter::writeValue(char* at, const NodeRecord& record) {
    switch (record.kind) {
    case NodeKind::string:
        return writeString(at, record.scalar());
    case NodeKind::number:
    case NodeKind::bool_: {
        const std::string_view text = storage_.text(record.scalar());
        at = needRoom(at, text.size() + chunk);
        if (text.empty())
            return at;
        if (!record.scalar().isInArena) // the source is padded
            return copyInChunks(at, text.data(), text.size());
        std::memcpy(at, text.data(), text.size());
        return at + text.size();
    }
    case NodeKind::null:
        at = needRoom(at, 4);
        std::memcpy(at, "null", 4);
        return at + 4;
    default:
        return openContainer(at, record);
    }
}

char* JSONWriter::openContainer(char* at, const NodeRecord& record) {
    at = needRoom(at, 2);
    const bool isObject = record.kind == NodeKind::object;
    const ChildList children = storage_.children(record);
    *at++ = isObject ? '{' : '[';
    if (children.empty()) {
        *at++ = isObject ? '}' : ']';
        return at;
    }
    const std::size_t sortedSoFar = sorted_.size();
    Frame frame{children.begin(), children.end(), sortedSoFar, sortedSoFar, sortedSoFar, isObject};
    if (isObject && sortKeys_) {
        sorter_.appendSorted(storage_, children, sorted_);
        frame.endSorted = sorted_.size();
        frame.next = frame.end;
    }
    open_.push_back(frame);
    return at;
}

char* JSONWriter::closeContainer(char* at) {
    const bool isObject = open_.back().isObject;
    sorted_.resize(open_.back().firstSorted);
    open_.pop_back();
    if (isPretty())
        at = writeLineBreak(at, open_.size());
    at = needRoom(at, 1);
    *at++ = isObject ? '}' : ']';
    return at;
}

[[gnu::always_inline]] inline char* JSONWriter::writeString(char* at, TextRef text) {
    if (text.isInArena) [[unlikely]]
        return writeEscaped(at, storage_.text(text));
    // What stands in the source as it is meant needs no escape.
    at = needRoom(at, text.length + 2 + chunk);
    *at++ = '"';
    if (text.length != 0)
        at = copyInChunks(at, storage_.source.data() + text.offset, text.length);
    *at++ = '"';
    return at;
}

char* JSONWriter::writeEscaped(char* at, std::string_view text) {
    constexpr char digits[] = "0123456789abcdef";
    constexpr std::size_t pieceSize = 1024;
    at = needRoom(at, 1);
    *at++ = '"';
    for (; !text.empty(); text.remove_prefix(std::min(pieceSize, text.size()))) {
        at = needRoom(at, std::min(pieceSize, text.size()) * longestEscape);
        for (char c : text.substr(0, pieceSize)) {
            // Both forms are written without asking which it is: escapes come too irregularly to be guessed.
            const auto byte = static_cast<unsigned char>(c);
            const char letter = escapeLetters[byte];
            at[0] = letter != 0 ? '\\' : c;
            at[1] = letter;
            at += letter != 0 ? 2 : 1;
            if (letter == 'u') [[unlikely]]
                for (char digit : {'0', '0', digits[byte >> 4], digits[byte & 15]})
                    *at++ = digit;
        }
    }
    at = needRoom(at, 1);
    *at++ = '"';
    return at;
}

[[gnu::always_inline]] inline char* JSONWriter::writeLineBreak(char* at, std::size_t depth) {
    const std::size_t indent = depth * indentUnit_.size();
    const std::size_t ready = lineBreak_.size() - chunk - 1;
    at = needRoom(at, 1 + indent + chunk);
    if (indent <= ready) [[likely]]
        return copyInChunks(at, lineBreak_.data(), 1 + indent);
    *at = '\n';
    std::memset(at + 1, indentUnit_.front(), indent); // a unit is one byte, repeated
    return at + 1 + indent;
}

} // namespace quelm
