// A record is the number of its kind, one byte, and its parts in the order in which they are declared. Numbers take
// seven bits a byte, the lowest first, in as few bytes as there can be; texts and lists have their length in front; what
// may be absent has a byte that says whether it is there.

#include "Quelm/Recovery/JournalRecord.h"

#include "TextCore/Check.h"

#include <string_view>

namespace quelm::journal {

namespace {

class Writer {
public:
    std::string take() { return std::move(bytes_); }

    void write(bool value) { byte(value ? 1 : 0); }
    void write(EditorMode mode) { byte(static_cast<std::uint8_t>(mode)); }
    void write(NodeKind kind) { byte(static_cast<std::uint8_t>(kind)); }
    void write(TextSource::Origin origin) { byte(static_cast<std::uint8_t>(origin)); }

    void write(std::uint64_t number) {
        for (; number >= 0x80; number >>= 7)
            byte(static_cast<std::uint8_t>(number | 0x80));
        byte(static_cast<std::uint8_t>(number));
    }
    void write(std::int64_t number) {
        require(number >= 0, "a number in a journal is not negative");
        write(static_cast<std::uint64_t>(number));
    }

    void write(std::string_view text) {
        write(std::uint64_t{text.size()});
        bytes_.append(text);
    }
    void write(const SharedText& text) { write(text.view()); }

    void write(const JSONStyle& style) {
        const auto indent = style.prettyIndent();
        byte(indent ? static_cast<std::uint8_t>(1 + static_cast<unsigned>(*indent)) : 0);
        write(style.sortsKeys());
    }

    void write(const ContentChecksum& checksum) {
        write(checksum.size);
        fixed(checksum.high);
        fixed(checksum.low);
    }

    template <class Value>
    void write(const std::optional<Value>& value) {
        write(value.has_value());
        if (value)
            write(*value);
    }
    void write(const std::optional<std::string>& text) {
        write(text.has_value());
        if (text)
            write(std::string_view(*text));
    }

    template <class Value>
    void write(const std::vector<Value>& values) {
        write(std::uint64_t{values.size()});
        for (const Value& value : values)
            write(value);
    }
    void write(std::uint32_t index) { write(std::uint64_t{index}); }

    template <class... Cases>
    void write(const std::variant<Cases...>& value) {
        byte(static_cast<std::uint8_t>(value.index()));
        std::visit([this](const auto& payload) { write(payload); }, value);
    }

    void write(const Base& base) {
        write(base.path);
        write(base.checksum);
        write(base.mode);
        write(base.style);
        write(base.recordsSince);
    }

    void write(const TextSource& source) {
        write(source.origin);
        if (source.origin == TextSource::Origin::literal)
            return write(source.bytes);
        write(source.location);
        write(source.length);
    }

    void write(const EditText& edit) {
        write(edit.location);
        write(edit.removed);
        write(edit.inserted);
    }

    void write(const SetKey& edit) {
        write(edit.node);
        write(edit.key);
    }
    void write(const SetValue& edit) {
        write(edit.node);
        write(edit.kind);
        write(edit.text);
    }
    void write(const Remove& edit) {
        write(edit.node);
        write(edit.number);
    }
    void write(const InsertDetached& edit) {
        write(edit.parent);
        write(edit.index);
        write(edit.number);
    }
    void write(const InsertNew& edit) {
        write(edit.parent);
        write(edit.index);
        write(edit.key);
        write(edit.json);
    }
    void write(const EditTree& edit) { write(edit.edits); }

    void write(const Reformat& change) {
        write(change.numberBefore);
        write(change.number);
        write(change.style);
    }
    void write(const Return& change) {
        write(change.numberBefore);
        write(change.number);
    }
    void write(const Replace& change) {
        write(change.numberBefore);
        write(change.number);
        write(change.style);
        write(change.hasText);
        write(change.hasTree);
        write(change.isTextMadeOfTree);
        write(change.text);
    }

    void write(const ChangeMode& change) { write(change.mode); }
    void write(const Modified& change) { write(change.isModified); }
    void write(const SaveOutcome& outcome) { write(outcome.isSaved); }

private:
    void byte(std::uint8_t value) { bytes_.push_back(static_cast<char>(value)); }
    void fixed(std::uint64_t value) {
        for (int index = 0; index < 8; ++index)
            byte(static_cast<std::uint8_t>(value >> (8 * index)));
    }

    std::string bytes_;
};

} // namespace

std::string encode(const Record& record) {
    Writer writer;
    writer.write(record);
    return writer.take();
}

} // namespace quelm::journal
