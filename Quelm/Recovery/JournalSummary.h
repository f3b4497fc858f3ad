#pragma once

#include "FileCore/JournalContents.h"
#include "Quelm/Recovery/JournalNumbers.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/JournalReplay.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace quelm {

/// What the records of a journal come to, without repeating them.
struct JournalSummary {
    /// From where the records can be repeated.
    struct Start {
        journal::Base base;
        /// The first record to repeat.
        std::size_t record = 0;
    };
    /// The bases that count, in order.
    std::vector<Start> starts;
    /// The records that are understood. What may come after them is not.
    std::size_t recordCount = 0;
    /// Whether there is something that is not understood, other than a last record that was never written whole.
    bool isDamaged = false;
    JournalNumbers numbers;

    /// Of any records whatever. Ends early when `stop` is requested. O(bytes).
    static JournalSummary of(const JournalContents& contents, const std::stop_token& stop = {});

    /// Whether there is anything to recover for a file whose state is that of the start.
    bool isModifiedSince(const Start& start) const;
    /// How many records from the start on return to each content.
    ReturnCounts returnsSince(const Start& start) const;

private:
    bool add(const journal::Record& record);
    void addBase(const journal::Base& base);
    void addOutcome(const journal::SaveOutcome& outcome);
    void note(std::int64_t numberBefore, std::int64_t number);
    void noteDetached(std::int64_t number);
    void noteModified(bool isModified);

    /// Whether the last base belongs to a save whose outcome is still to come.
    bool isSaving_ = false;
    struct Change {
        std::size_t record = 0;
        bool isModified = false;
    };
    /// The last record that says whether there is anything to recover.
    std::optional<Change> lastChange_;
    /// Records that return to a content, with its number.
    std::vector<std::pair<std::size_t, std::int64_t>> returns_;
};

} // namespace quelm
