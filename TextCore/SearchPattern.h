#pragma once

#include "TextCore/CandidateScan.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// Whether a search tells upper from lower case.
enum class CaseSensitivity : std::uint8_t { sensitive, insensitive };

/// What a search looks for: characters one after the other, each as it is or, where case is ignored, in any character
/// of the same simple case folding (Unicode: one character for one, the same in all languages; "ß" is not "ss").
/// Nothing is normalised. A value; may be used on any thread.
class SearchPattern {
public:
    /// `needle` must be well-formed UTF-8 and not empty.
    SearchPattern(std::string_view needle, CaseSensitivity sensitivity);

    /// The fewest and the most bytes of a match: case forms differ in length.
    std::size_t minimumLength() const { return minimumLength_; }
    std::size_t maximumLength() const { return maximumLength_; }

    /// The length of the match that the well-formed `text` begins with, 0 for none. The text may be cut within a
    /// character at its end.
    std::size_t lengthAt(std::string_view text) const {
        return forms_.empty() ? lengthOfBytes(text) : lengthOfForms(text);
    }

    /// What holds wherever a match begins, the rarest of what does.
    const MatchAnchor& firstAnchor() const { return firstAnchor_; }
    const MatchAnchor& secondAnchor() const { return secondAnchor_; }
    /// Bytes from the start of a match beyond which no anchor lies.
    static constexpr std::size_t anchoredLength = 128;

    friend bool operator==(const SearchPattern& left, const SearchPattern& right) {
        return left.needle_ == right.needle_ && left.sensitivity_ == right.sensitivity_;
    }

private:
    /// A way to write a character.
    struct Form {
        char bytes[4];
        std::uint8_t length;
        /// Whether it is the last of its character's.
        bool isLast;
    };

    void addForms();
    void measureForms();
    void chooseAnchors();
    /// The values that bytes of a match have, by distance from its start, as far as they are at fixed distances.
    std::vector<std::string> valuesByOffset() const;
    std::size_t lengthOfBytes(std::string_view text) const { return text.starts_with(needle_) ? needle_.size() : 0; }
    std::size_t lengthOfForms(std::string_view text) const;

    std::string needle_;
    CaseSensitivity sensitivity_;
    /// Those of all characters in order; none when each has only one.
    std::vector<Form> forms_;
    std::size_t minimumLength_ = 0;
    std::size_t maximumLength_ = 0;
    MatchAnchor firstAnchor_;
    MatchAnchor secondAnchor_;
};

} // namespace quelm
