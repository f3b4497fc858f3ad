#pragma once

#include <cstdint>
#include <rapidjson/document.h>
#include <rapidjson/reader.h>
#include <string>

/// RapidJSON's document keeps a number that was parsed as text like a string. To write such numbers raw
/// again, documents for writing mark them: with a first byte that no UTF-8 text contains, so that the values
/// keep their usual shape in memory.
namespace quelm::bench::rapidjsonpeer {

/// Where the library says that it is; a source may have moved it. Two may be linked into one program, so all
/// that is defined here over its types is a template of them.
namespace library = RAPIDJSON_NAMESPACE;

constexpr unsigned parseFlags = library::kParseIterativeFlag | library::kParseNumbersAsStringsFlag;
constexpr char numberMark = '\xFF';

/// Builds a document as RapidJSON does, but for the mark.
template <typename Document>
class MarkingHandler : public library::BaseReaderHandler<library::UTF8<>, MarkingHandler<Document>> {
public:
    explicit MarkingHandler(Document& document) : document_(document) {}

    // The names are those that RapidJSON calls.
    // NOLINTBEGIN(readability-identifier-naming)
    bool RawNumber(const char* text, library::SizeType length, bool) {
        marked_.assign(1, numberMark).append(text, length);
        constexpr bool copy = true;
        return document_.String(marked_.data(), length + 1, copy);
    }
    bool String(const char* text, library::SizeType length, bool copy) { return document_.String(text, length, copy); }
    bool Key(const char* text, library::SizeType length, bool copy) { return document_.Key(text, length, copy); }
    bool Null() { return document_.Null(); }
    bool Bool(bool value) { return document_.Bool(value); }
    bool StartObject() { return document_.StartObject(); }
    bool EndObject(library::SizeType count) { return document_.EndObject(count); }
    bool StartArray() { return document_.StartArray(); }
    bool EndArray(library::SizeType count) { return document_.EndArray(count); }
    // NOLINTEND(readability-identifier-naming)

private:
    Document& document_;
    std::string marked_;
};

/// Parses zero-terminated text into an empty document, numbers marked; false when the text is refused.
template <typename Document>
bool parseWithMarkedNumbers(Document& document, const char* text) {
    bool isParsed = false;
    auto generate = [&](Document& target) {
        library::Reader reader;
        library::StringStream stream(text);
        MarkingHandler handler(target);
        isParsed = !reader.Parse<parseFlags>(stream, handler).IsError();
        return isParsed;
    };
    document.Populate(generate);
    return isParsed;
}

/// Passes the events of a document on to a writer, marked numbers as raw text.
template <typename Writer>
class RawNumberHandler {
public:
    using Ch = char;

    explicit RawNumberHandler(Writer& writer) : writer_(writer) {}

    // NOLINTBEGIN(readability-identifier-naming)
    bool String(const char* text, library::SizeType length, bool copy) {
        if (length > 0 && text[0] == numberMark)
            return writer_.RawValue(text + 1, length - 1, library::kNumberType);
        return writer_.String(text, length, copy);
    }
    bool Key(const char* text, library::SizeType length, bool copy) { return writer_.Key(text, length, copy); }
    bool Null() { return writer_.Null(); }
    bool Bool(bool value) { return writer_.Bool(value); }
    bool StartObject() { return writer_.StartObject(); }
    bool EndObject(library::SizeType count) { return writer_.EndObject(count); }
    bool StartArray() { return writer_.StartArray(); }
    bool EndArray(library::SizeType count) { return writer_.EndArray(count); }

    // A document whose numbers were parsed as text holds none of these.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }
    // NOLINTEND(readability-identifier-naming)

private:
    Writer& writer_;
};

} // namespace quelm::bench::rapidjsonpeer
