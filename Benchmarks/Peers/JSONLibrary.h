#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace quelm::bench {

/// How a document is written: two spaces a level and one value a line; without white space; as `pretty` with
/// the members of objects in the order of their keys.
enum class WriteLayout : std::uint8_t { pretty, compact, sorted };

/// A JSON library under measurement. It holds at most one document and one output, and each operation is what
/// is timed and nothing else: whatever prepares or frees is an operation of its own.
class JSONLibrary {
public:
    /// Bytes that must be readable, and zero, after every text given to a library: they all read the same
    /// memory.
    static constexpr std::size_t padding = 64;

    virtual ~JSONLibrary() = default;

    virtual std::string_view name() const = 0;

    /// Whether it is far behind, so that large texts and many rounds would only cost time.
    virtual bool isSlow() const { return false; }

    /// Makes a document of the text, with nothing kept from the one before; false when it refuses the text.
    /// No document may be held. The text must live until the document is discarded.
    virtual bool parse(std::string_view paddedText) = 0;
    virtual void discardDocument() = 0;

    virtual bool canWrite(WriteLayout) const { return false; }

    /// Whether numbers come out of `write` as they stood in the text, so that two such libraries write the
    /// same.
    virtual bool writesNumbersAsGiven() const { return false; }

    /// As `parse`, for a document that will be written with every number as it stands in the text where the
    /// library can.
    virtual bool parseForWriting(std::string_view paddedText) { return parse(paddedText); }

    /// Writes the document that is held; false when that fails. No output may be held.
    virtual bool write(WriteLayout) { return false; }

    /// What was written, until `discardOutput`.
    virtual std::string_view output() const { return {}; }
    virtual void discardOutput() {}
};

} // namespace quelm::bench
