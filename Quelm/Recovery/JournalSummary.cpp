#include "Quelm/Recovery/JournalSummary.h"

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>
#include <variant>

namespace quelm {

namespace {

/// Above the number, and still a number.
std::int64_t next(std::int64_t number) {
    return number == std::numeric_limits<std::int64_t>::max() ? number : number + 1;
}

} // namespace

JournalSummary JournalSummary::of(const JournalContents& contents, const std::stop_token& stop) {
    JournalSummary summary;
    for (const SharedText& bytes : contents.records) {
        if (stop.stop_requested())
            return summary;
        const std::optional<journal::Record> record = journal::decode(bytes);
        if (!record || !summary.add(*record)) {
            summary.isDamaged = true;
            return summary;
        }
        ++summary.recordCount;
    }
    summary.isDamaged = contents.end == JournalContents::End::damaged || contents.end == JournalContents::End::unknown;
    return summary;
}

/// Whether the record makes sense after those before it.
bool JournalSummary::add(const journal::Record& record) {
    const auto* base = std::get_if<journal::Base>(&record);
    // Every journal begins with a base, and none holds for records that there are not.
    if (base ? base->recordsSince > recordCount : recordCount == 0)
        return false;
    std::visit(
        [this](const auto& each) {
            using Each = std::decay_t<decltype(each)>;
            if constexpr (std::is_same_v<Each, journal::Base>) {
                addBase(each);
            } else if constexpr (std::is_same_v<Each, journal::SaveOutcome>) {
                addOutcome(each);
            } else if constexpr (std::is_same_v<Each, journal::Modified>) {
                noteModified(each.isModified);
            } else if constexpr (std::is_same_v<Each, journal::EditText>) {
                noteModified(true);
            } else if constexpr (std::is_same_v<Each, journal::EditTree>) {
                noteModified(true);
                for (const journal::NodeEdit& edit : each.edits)
                    if (const auto* removed = std::get_if<journal::Remove>(&edit))
                        noteDetached(removed->number);
            } else if constexpr (!std::is_same_v<Each, journal::ChangeMode>) {
                noteModified(true);
                note(each.numberBefore, each.number);
                if constexpr (std::is_same_v<Each, journal::Return>)
                    returns_.emplace_back(recordCount, each.number);
            }
        },
        record);
    return true;
}

void JournalSummary::addBase(const journal::Base& base) {
    starts.push_back({.base = base, .record = recordCount - static_cast<std::size_t>(base.recordsSince)});
    isSaving_ = recordCount > 0;
}

void JournalSummary::addOutcome(const journal::SaveOutcome& outcome) {
    if (!std::exchange(isSaving_, false))
        return;
    if (outcome.isSaved)
        starts.erase(starts.begin(), starts.end() - 1);
    else
        starts.pop_back();
}

void JournalSummary::note(std::int64_t numberBefore, std::int64_t number) {
    numbers.nextContent = std::max({numbers.nextContent, next(numberBefore), next(number)});
}

void JournalSummary::noteDetached(std::int64_t number) {
    numbers.nextDetached = std::max(numbers.nextDetached, next(number));
}

void JournalSummary::noteModified(bool isModified) {
    lastChange_ = Change{recordCount, isModified};
}

bool JournalSummary::isModifiedSince(const Start& start) const {
    return lastChange_ && lastChange_->record >= start.record && lastChange_->isModified;
}

ReturnCounts JournalSummary::returnsSince(const Start& start) const {
    ReturnCounts counts;
    for (const auto& [record, number] : returns_)
        if (record >= start.record)
            ++counts[number];
    return counts;
}

} // namespace quelm
