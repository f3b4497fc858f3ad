#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What the files of canonical texts share beneath CanonicalText.h. All functions take well-formed UTF-8.
namespace quelm::canonical {

/// How many leading bytes are the same. Texts in the same place of memory are not read.
std::size_t commonPrefixLength(std::string_view left, std::string_view right);

/// The last place up to `position` where no text that reaches it is within a character. Both are the same before
/// `position`.
std::size_t sharedCharacterStart(std::string_view left, std::string_view right, std::size_t position);

/// Whether the form of the text is, whatever the text, the forms of its parts before and after `position`: at its end,
/// and before every character that never joins what precedes it.
bool hasBoundaryAt(std::string_view text, std::size_t position);

/// The NFC form of a text, made a bounded piece at a time: a long run of marks without any boundary alone is one piece
/// whatever its length (past 512 MiB it is cut, in what nobody would call text). O(n) in all; O(n log n) for such runs,
/// however their marks are ordered. The text must outlive the pieces.
class FormPieces {
public:
    explicit FormPieces(std::string_view text) : rest_(text) {}

    /// What comes next of the form, empty after all of it: a view of the text where that is in the form already, else
    /// of storage that the next call overwrites.
    std::string_view next();

private:
    std::string_view rest_;
    std::string storage_;
};

} // namespace quelm::canonical
