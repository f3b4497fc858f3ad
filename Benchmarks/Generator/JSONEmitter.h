#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm::bench {

/// White space between values: none at all, or one value a line with two spaces a level.
enum class Layout : std::uint8_t { compact, indented };

/// Writes JSON piece by piece, in blocks, so that a gigabyte needs no memory. It trusts its caller to open
/// and close in the right order and to put a key before every member.
class JSONEmitter {
public:
    /// Receives the text, block after block.
    using Destination = std::function<void(std::string_view)>;

    JSONEmitter(Layout layout, Destination destination);

    void beginObject() { open('{', '}'); }
    void beginArray() { open('[', ']'); }

    /// Closes the innermost container.
    void end();

    /// The key of the next value. `written` is what stands between the quotes, escapes included.
    void key(std::string_view written);

    /// A string; `written` as for `key`.
    void string(std::string_view written);

    /// A number or a name, byte for byte.
    void literal(std::string_view text);

    /// The length of the text if every open container were closed now.
    std::uint64_t sizeIfClosed() const;

    std::size_t depth() const { return open_.size(); }

    /// Ends the text and hands over what is left of it. All containers must be closed.
    void finish();

private:
    struct Container {
        char closing;
        bool isEmpty = true;
    };

    void open(char opening, char closing);
    void beginValue();
    void separate();
    void breakLine(std::size_t level);
    void append(std::string_view bytes);

    Layout layout_;
    Destination destination_;
    std::vector<Container> open_;
    bool afterKey_ = false;
    std::string block_;
    std::uint64_t handedOver_ = 0;
};

} // namespace quelm::bench
