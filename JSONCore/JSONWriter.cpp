#include "JSONCore/JSONWriter.h"

#include "JSONCore/JSONEscapes.h"

#include <cstring>

namespace quelm {

namespace {

constexpr std::size_t chunk = 16;

/// Copies in whole chunks: up to `chunk` - 1 bytes more than asked for are read and written. Most texts of JSON are short,
/// and one copy of fixed size costs less than a call.
inline void copyInChunks(char* to, const char* from, std::size_t count) {
    for (std::size_t at = 0; at < count; at += chunk)
        std::memcpy(to + at, from + at, chunk);
}

/// The one-letter escape of a byte, or 0.
constexpr char escapeLetter(unsigned char byte) {
    switch (byte) {
    case '\b':
        return 'b';
    case '\t':
        return 't';
    case '\n':
        return 'n';
    case '\f':
        return 'f';
    case '\r':
        return 'r';
    case '"':
    case '\\':
        return static_cast<char>(byte);
    default:
        return 0;
    }
}

void writeEscape(TextBuilder& output, unsigned char byte) {
    if (const char letter = escapeLetter(byte)) {
        const char escape[] = {'\\', letter};
        output.append({escape, sizeof escape});
        return;
    }
    constexpr char digits[] = "0123456789abcdef";
    const char escape[] = {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 15]};
    output.append({escape, sizeof escape});
}

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

SharedText JSONWriter::write(NodeID start) {
    // Room that is not used costs nothing, and growing copies.
    const std::size_t bytesPerNode = isPretty() ? 24 : 16;
    const std::size_t nodeCount = storage_.record(start).subtreeSize();
    output_ = TextBuilder(nodeCount * bytesPerNode + (nodeCount > 1000 ? storage_.source.size() : 0));

    writeValue(storage_.record(start));
    while (!open_.empty()) {
        Frame& frame = open_.back();
        if (!hasNext(frame)) {
            closeContainer();
            continue;
        }
        const NodeRecord& child = storage_.record(takeNext(frame));
        if (!frame.isFirst) {
            *output_.room(1) = ',';
            output_.advance(1);
        }
        frame.isFirst = false;
        if (isPretty())
            writeLineBreak(open_.size());
        if (frame.isObject) {
            writeString(child.key());
            output_.append(isPretty() ? ": " : ":");
        }
        writeValue(child);
    }
    if (isPretty())
        output_.append("\n");
    return output_.finish();
}

bool JSONWriter::hasNext(const Frame& frame) const {
    return frame.nextSorted != frame.endSorted || !(frame.next == frame.end);
}

NodeID JSONWriter::takeNext(Frame& frame) const {
    return frame.nextSorted != frame.endSorted ? sorted_[frame.nextSorted++] : *frame.next++;
}

void JSONWriter::writeValue(const NodeRecord& record) {
    switch (record.kind) {
    case NodeKind::object:
    case NodeKind::array:
        openContainer(record);
        break;
    case NodeKind::string:
        writeString(record.scalar());
        break;
    case NodeKind::number:
    case NodeKind::bool_:
        writePlain(record.scalar(), 0);
        break;
    case NodeKind::null:
        output_.append("null");
        break;
    }
}

void JSONWriter::openContainer(const NodeRecord& record) {
    const bool isObject = record.kind == NodeKind::object;
    const ChildList children = storage_.children(record);
    if (children.empty()) {
        output_.append(isObject ? "{}" : "[]");
        return;
    }
    *output_.room(1) = isObject ? '{' : '[';
    output_.advance(1);
    const std::size_t sortedSoFar = sorted_.size();
    Frame frame{children.begin(), children.end(), sortedSoFar, sortedSoFar, sortedSoFar, isObject, true};
    if (isObject && sortKeys_) {
        sorter_.appendSorted(storage_, children, sorted_);
        frame.endSorted = sorted_.size();
        frame.next = frame.end;
    }
    open_.push_back(frame);
}

void JSONWriter::closeContainer() {
    const Frame frame = open_.back();
    open_.pop_back();
    sorted_.resize(frame.firstSorted);
    if (isPretty())
        writeLineBreak(open_.size());
    *output_.room(1) = frame.isObject ? '}' : ']';
    output_.advance(1);
}

void JSONWriter::writePlain(TextRef text, std::size_t quotes) {
    char* out = output_.room(text.length + 2 + chunk);
    *out = '"';
    const std::string_view bytes = storage_.text(text);
    if (text.isInArena)
        std::memcpy(out + quotes, bytes.data(), bytes.size());
    else // the source is padded
        copyInChunks(out + quotes, bytes.data(), bytes.size());
    out[quotes + bytes.size()] = '"';
    output_.advance(bytes.size() + 2 * quotes);
}

void JSONWriter::writeString(TextRef text) {
    // What stands in the source as it is meant needs no escape.
    if (text.isInArena)
        writeEscaped(storage_.text(text));
    else
        writePlain(text, 1);
}

void JSONWriter::writeEscaped(std::string_view text) {
    output_.append("\"");
    while (!text.empty()) {
        const std::size_t plain = json::plainPrefixLength(text);
        output_.append(text.substr(0, plain));
        text.remove_prefix(plain);
        // Escapes often stand in a row.
        while (!text.empty() && json::needsEscape(static_cast<unsigned char>(text.front()))) {
            writeEscape(output_, static_cast<unsigned char>(text.front()));
            text.remove_prefix(1);
        }
    }
    output_.append("\"");
}

void JSONWriter::writeLineBreak(std::size_t depth) {
    const std::size_t indent = depth * indentUnit_.size();
    const std::size_t ready = lineBreak_.size() - chunk - 1;
    if (indent <= ready) {
        copyInChunks(output_.room(1 + indent + chunk), lineBreak_.data(), 1 + indent);
        output_.advance(1 + indent);
        return;
    }
    char* out = output_.room(1 + indent);
    *out = '\n';
    std::memset(out + 1, indentUnit_.front(), indent); // a unit is one byte, repeated
    output_.advance(1 + indent);
}

} // namespace quelm
