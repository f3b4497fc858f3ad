#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <variant>

namespace quelm {

/// How JSON is written: `compact`, without any white space and with keys in document order, or `pretty`, one member or
/// element a line.
class JSONStyle {
public:
    enum class Indent : std::uint8_t { twoSpaces, fourSpaces, tab };

    /// In the order in which they are offered to the user.
    static constexpr std::array allIndents{Indent::twoSpaces, Indent::fourSpaces, Indent::tab};

    /// "twoSpaces", "fourSpaces" or "tab": what is stored.
    static constexpr std::string_view rawValue(Indent indent) {
        constexpr std::array<std::string_view, 3> names{"twoSpaces", "fourSpaces", "tab"};
        return names[static_cast<std::size_t>(indent)];
    }

    /// The indent whose raw value is exactly `rawValue`; absent for any other text.
    static std::optional<Indent> indentFromRawValue(std::string_view rawValue);

    /// The bytes of one level of indentation.
    static constexpr std::string_view unit(Indent indent) {
        constexpr std::array<std::string_view, 3> units{"  ", "    ", "\t"};
        return units[static_cast<std::size_t>(indent)];
    }

    static constexpr JSONStyle compact() { return JSONStyle(); }
    static constexpr JSONStyle pretty(Indent indent, bool sortKeys) { return JSONStyle(Pretty{indent, sortKeys}); }

    constexpr bool isCompact() const { return std::holds_alternative<Compact>(case_); }
    constexpr bool isPretty() const { return std::holds_alternative<Pretty>(case_); }

    /// The payload of `pretty`; absent for `compact`.
    constexpr std::optional<Indent> prettyIndent() const {
        const Pretty* pretty = std::get_if<Pretty>(&case_);
        return pretty ? std::optional(pretty->indent) : std::nullopt;
    }

    /// Whether object members are written sorted by key: never for `compact`.
    constexpr bool sortsKeys() const {
        const Pretty* pretty = std::get_if<Pretty>(&case_);
        return pretty && pretty->sortKeys;
    }

    /// The style that best describes a text, from its first 65,536 bytes: the indentation of the first indented line.
    /// Never one that sorts keys.
    static JSONStyle detect(std::string_view text);

    friend constexpr bool operator==(const JSONStyle&, const JSONStyle&) = default;

private:
    struct Compact {
        friend constexpr bool operator==(Compact, Compact) = default;
    };
    struct Pretty {
        Indent indent;
        bool sortKeys;
        friend constexpr bool operator==(Pretty, Pretty) = default;
    };

    constexpr JSONStyle() : case_(Compact{}) {}
    constexpr explicit JSONStyle(Pretty pretty) : case_(pretty) {}

    std::variant<Compact, Pretty> case_;
};

} // namespace quelm

template <>
struct std::hash<quelm::JSONStyle> {
    std::size_t operator()(const quelm::JSONStyle& style) const noexcept;
};
