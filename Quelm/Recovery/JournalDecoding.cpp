// See JournalEncoding.cpp for how a record is written.

#include "Quelm/Recovery/JournalRecord.h"

#include "TextCore/UTF8.h"

#include <cstddef>
#include <limits>
#include <utility>

namespace quelm::journal {

namespace {

/// Reads until something is wrong, and from then on nothing but zeros.
class Reader {
public:
    explicit Reader(const SharedText& bytes) : bytes_(bytes) {}

    bool hasFailed() const { return hasFailed_; }
    bool isAtEnd() const { return position_ == bytes_.size(); }

    void read(bool& value) { value = choice(2) == 1; }
    void read(EditorMode& mode) { mode = choice(2) == 0 ? EditorMode{0} : EditorMode{1}; }
    void read(NodeKind& kind) { kind = static_cast<NodeKind>(choice(allNodeKinds.size())); }
    void read(TextSource::Origin& origin) { origin = static_cast<TextSource::Origin>(choice(3)); }

    void read(std::uint64_t& number) {
        number = 0;
        for (unsigned shift = 0;; shift += 7) {
            const std::uint8_t byte = nextByte();
            // Neither more than 64 bits nor a longer form than need be.
            if ((shift == 63 && byte > 1) || (shift != 0 && byte == 0))
                return fail();
            number |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte < 0x80)
                return;
        }
    }
    void read(std::int64_t& number) {
        number = static_cast<std::int64_t>(limited(std::numeric_limits<std::int64_t>::max()));
    }
    void read(std::uint32_t& index) {
        index = static_cast<std::uint32_t>(limited(std::numeric_limits<std::uint32_t>::max()));
    }

    void read(SharedText& text) {
        const std::size_t count = length();
        text = bytes_.slice(position_, count);
        position_ += count;
        if (!utf8::isValid(text.view()))
            fail();
    }
    void read(std::string& text) {
        SharedText read;
        this->read(read);
        text = read.view();
    }

    void read(JSONStyle& style) {
        const std::size_t form = choice(1 + JSONStyle::allIndents.size());
        bool sortsKeys = false;
        read(sortsKeys);
        if (form == 0 && sortsKeys)
            return fail();
        style = form == 0 ? JSONStyle::compact() : JSONStyle::pretty(JSONStyle::allIndents[form - 1], sortsKeys);
    }

    void read(ContentChecksum& checksum) {
        read(checksum.size);
        checksum.high = fixed();
        checksum.low = fixed();
    }

    template <class Value>
    void read(std::optional<Value>& value) {
        bool isThere = false;
        read(isThere);
        if (isThere)
            read(value.emplace());
    }

    template <class Value>
    void read(std::vector<Value>& values) {
        const std::size_t count = length();
        for (std::size_t index = 0; index < count && !hasFailed_; ++index)
            read(values.emplace_back());
    }

    template <class... Cases>
    void read(std::variant<Cases...>& value) {
        readCase(value, choice(sizeof...(Cases)), std::index_sequence_for<Cases...>());
    }

    void read(Base& base) {
        read(base.path);
        read(base.checksum);
        read(base.mode);
        read(base.style);
        read(base.recordsSince);
    }

    void read(TextSource& source) {
        read(source.origin);
        if (source.origin == TextSource::Origin::literal)
            return read(source.bytes);
        read(source.location);
        read(source.length);
    }

    void read(EditText& edit) {
        read(edit.location);
        read(edit.removed);
        read(edit.inserted);
    }

    void read(SetKey& edit) {
        read(edit.node);
        read(edit.key);
    }
    void read(SetValue& edit) {
        read(edit.node);
        read(edit.kind);
        read(edit.text);
    }
    void read(Remove& edit) {
        read(edit.node);
        read(edit.number);
    }
    void read(InsertDetached& edit) {
        read(edit.parent);
        read(edit.index);
        read(edit.number);
    }
    void read(InsertNew& edit) {
        read(edit.parent);
        read(edit.index);
        read(edit.key);
        read(edit.json);
    }
    void read(EditTree& edit) { read(edit.edits); }

    void read(Reformat& change) {
        read(change.numberBefore);
        read(change.number);
        read(change.style);
    }
    void read(Return& change) {
        read(change.numberBefore);
        read(change.number);
    }
    void read(Replace& change) {
        read(change.numberBefore);
        read(change.number);
        read(change.style);
        read(change.hasText);
        read(change.hasTree);
        read(change.isTextMadeOfTree);
        read(change.text);
    }

    void read(ChangeMode& change) { read(change.mode); }
    void read(Modified& change) { read(change.isModified); }
    void read(SaveOutcome& outcome) { read(outcome.isSaved); }

private:
    void fail() {
        hasFailed_ = true;
        position_ = bytes_.size();
    }

    std::uint8_t nextByte() {
        if (position_ == bytes_.size()) {
            fail();
            return 0;
        }
        return static_cast<std::uint8_t>(bytes_.data()[position_++]);
    }

    /// One of so many, from 0.
    std::size_t choice(std::size_t count) {
        const std::uint8_t byte = nextByte();
        if (byte < count)
            return byte;
        fail();
        return 0;
    }

    std::uint64_t limited(std::uint64_t most) {
        std::uint64_t number = 0;
        read(number);
        if (number <= most)
            return number;
        fail();
        return 0;
    }

    /// Of what follows: bytes, or things that take one at least, so that a length that is a lie takes no memory.
    std::size_t length() {
        std::uint64_t number = 0;
        read(number);
        if (number <= bytes_.size() - position_)
            return number;
        fail();
        return 0;
    }

    std::uint64_t fixed() {
        std::uint64_t value = 0;
        for (int index = 0; index < 8; ++index)
            value |= std::uint64_t{nextByte()} << (8 * index);
        return value;
    }

    template <class Variant, std::size_t... Index>
    void readCase(Variant& value, std::size_t chosen, std::index_sequence<Index...>) {
        ((Index == chosen ? read(value.template emplace<Index>()) : void()), ...);
    }

    const SharedText& bytes_;
    std::size_t position_ = 0;
    bool hasFailed_ = false;
};

} // namespace

std::optional<Record> decode(const SharedText& bytes) {
    Reader reader(bytes);
    Record record;
    reader.read(record);
    if (reader.hasFailed() || !reader.isAtEnd())
        return std::nullopt;
    return record;
}

} // namespace quelm::journal
