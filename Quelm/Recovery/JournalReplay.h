#pragma once

#include "JSONCore/JSONContent.h"
#include "JSONCore/JSONParser.h"
#include "Quelm/Documents/EditorMode.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/ReplayError.h"
#include "Quelm/Recovery/TreeEditReplay.h"
#include "TextCore/SharedText.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <expected>
#include <stop_token>
#include <unordered_map>

namespace quelm {

/// How many of the records to come return to each content: one that none returns to need not be kept.
using ReturnCounts = std::unordered_map<std::int64_t, std::int64_t>;

/// What repeating records may take, whatever they say.
struct ReplayLimits {
    /// No text is longer, in bytes.
    std::int64_t longestText = JSONParser::maximumTextSize;
    /// All texts together that are parsed or written, in bytes.
    std::int64_t work = std::int64_t{1} << 40;
};

/// Repeats what a journal's records say on what they begin from, as the document did it when they were recorded. Any
/// records whatever are safe: what cannot be repeated is an error, and the content is then what it was before that
/// record; nothing may be repeated after it. Movable, not copyable. For one thread at a time.
class JournalReplay {
public:
    /// The state that a base stands for: that of the bytes of its file, or of a new document when the base has no
    /// checksum. That the bytes are those of the checksum is for the caller to see to. `stop` ends this and every later
    /// operation soon. O(bytes).
    static std::expected<JournalReplay, ReplayError> start(const journal::Base& base, SharedText file,
                                                           ReturnCounts returns = {}, std::stop_token stop = {},
                                                           const ReplayLimits& limits = {});

    JournalReplay(JournalReplay&&) = default;
    JournalReplay& operator=(JournalReplay&&) = default;

    /// A base changes nothing: it says what the state is anyway. Nor does the outcome of a save.
    std::expected<void, ReplayError> apply(const journal::Record& record);

    EditorMode mode() const { return mode_; }

    /// Whether there is anything to recover: an edit was repeated, and no later record says that it came back to what
    /// is saved.
    bool isModified() const { return isModified_; }

    /// What the document held, which its mode can show.
    std::expected<JSONContent, ReplayError> content() &&;

private:
    using Repeated = std::expected<void, ReplayError>;

    /// A content and what only it can be asked for.
    struct Held {
        JSONContent content;
        /// The text is what the style makes of the tree, and is not made before it is needed.
        bool isTextPending = false;
        DetachedNodes detached;
    };

    JournalReplay(TextRope file, ReturnCounts returns, std::stop_token stop, const ReplayLimits& limits);

    Repeated begin(const journal::Base& base);
    Repeated repeat(const journal::Base& base);
    Repeated repeat(const journal::EditText& edit);
    Repeated repeat(const journal::EditTree& edit);
    Repeated repeat(const journal::Reformat& reformat);
    Repeated repeat(const journal::Return& back);
    Repeated repeat(const journal::Replace& replace);
    Repeated repeat(const journal::ChangeMode& change);
    Repeated repeat(const journal::Modified& modified);
    Repeated repeat(const journal::SaveOutcome& outcome);

    std::expected<Held, ReplayError> replacement(const journal::Replace& replace, const TextRope& text);
    Repeated replaceHeld(std::int64_t numberBefore, std::int64_t number, Held held);
    bool canShow(const Held& held, EditorMode mode) const;

    /// The content with its text, if it can have one.
    Repeated makeText(Held& held);
    /// The content with its tree.
    Repeated makeTree(Held& held);
    /// What is parsed or written counts as work.
    Repeated spend(std::int64_t bytes);

    Held held_;
    EditorMode mode_ = EditorMode::tree;
    bool isModified_ = false;
    std::unordered_map<std::int64_t, Held> kept_;

    TextRope file_;
    ReturnCounts returns_;
    std::stop_token stop_;
    ReplayLimits limits_;
    std::int64_t workDone_ = 0;
};

} // namespace quelm
