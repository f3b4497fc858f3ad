#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "TextCore/CanonicalText.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quelm {

/// One visible line of a `TreeOutline`, with all that a view needs to draw it. A plain value, identified by its `id`;
/// equal rows are equal in every field, texts by canonical equivalence.
struct TreeRow {
    /// How a row is named.
    class Label {
    public:
        /// A member of an object: its key.
        static Label key(std::string text) { return Label(Key{std::move(text)}); }
        /// An element of an array: its position, from 0.
        static Label index(std::int64_t position) { return Label(position); }
        /// The top-level value.
        static Label root() { return Label(Root{}); }

        bool isRoot() const { return std::holds_alternative<Root>(case_); }
        /// The payload when the label is of that case, else null.
        const std::string* asKey() const {
            const Key* key = std::get_if<Key>(&case_);
            return key ? &key->text : nullptr;
        }
        const std::int64_t* asIndex() const { return std::get_if<std::int64_t>(&case_); }

        friend bool operator==(const Label&, const Label&) = default;

    private:
        struct Key {
            std::string text;
            friend bool operator==(const Key& left, const Key& right) {
                return canonical::equal(left.text, right.text);
            }
        };
        struct Root {
            friend bool operator==(Root, Root) = default;
        };
        using Case = std::variant<Key, std::int64_t, Root>;
        explicit Label(Case payload) : case_(std::move(payload)) {}

        Case case_;
    };

    NodeID id;
    /// 0 for the top-level value.
    std::int64_t depth = 0;
    Label label = Label::root();
    NodeKind kind = NodeKind::null;
    /// Empty for containers, "null", or the text of the scalar: a text of more than 200 bytes is cut after 200
    /// characters and "…" follows.
    std::string value;
    /// 0 for scalars.
    std::int64_t childCount = 0;
    bool isExpanded = false;
    /// Another member of the same object has this key.
    bool isDuplicateKey = false;

    /// Whether `value`, made by one of the functions below, is not a scalar's text as it is but ends in a "…" that was
    /// put there. O(1).
    bool isValueShortened() const;

    /// The text of a scalar as `value` shows it. A single character may take megabytes, and then this does.
    static std::string displayText(std::string_view scalar);

    /// The most bytes of a key or a value in a preview: more than fit into any window.
    static constexpr std::size_t longestPreview = 10'000;

    /// The same, but looking at no more of the scalar than its first `longestPreview` bytes. It differs from that only
    /// where 200 characters take more than they, and ends within a character then.
    static std::string previewText(std::string_view scalar);

    /// The beginning of a key: `longestPreview` bytes, or up to three fewer so as not to cut a scalar value in two.
    static std::string_view previewKey(std::string_view key);

    friend bool operator==(const TreeRow& left, const TreeRow& right);
};

} // namespace quelm
