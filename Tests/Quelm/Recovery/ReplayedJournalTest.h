#pragma once

#include "JSONCore/JSONSerializer.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Recovery/JournalReplay.h"

#include <expected>
#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quelm {

/// Journals that are written by hand and repeated.
class ReplayedJournalTest : public testing::Test {
protected:
    using Repeated = std::expected<void, ReplayError>;
    static constexpr auto impossible = std::unexpected(ReplayError::impossible);

    static constexpr JSONStyle pretty = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false);
    static constexpr JSONStyle sorted = JSONStyle::pretty(JSONStyle::Indent::fourSpaces, true);

    static SharedText text(std::string_view bytes) { return SharedText(bytes); }

    static journal::Base base(EditorMode mode, std::string_view file) {
        return {.path = "/a.json", .checksum = ContentChecksum::of(file), .mode = mode, .style = pretty};
    }
    static journal::TextSource literal(std::string_view bytes) {
        return {.origin = journal::TextSource::Origin::literal, .bytes = text(bytes)};
    }
    static journal::TextSource removedCopy(std::int64_t location, std::int64_t length) {
        return {.origin = journal::TextSource::Origin::removed, .bytes = {}, .location = location, .length = length};
    }
    static journal::TextSource fileCopy(std::int64_t location, std::int64_t length) {
        return {.origin = journal::TextSource::Origin::file, .bytes = {}, .location = location, .length = length};
    }
    static journal::EditText edit(std::int64_t location, std::int64_t removed,
                                  std::vector<journal::TextSource> inserted) {
        return {.location = location, .removed = removed, .inserted = std::move(inserted)};
    }
    static journal::EditText edit(std::int64_t location, std::int64_t removed, std::string_view inserted) {
        return edit(location, removed, std::vector{literal(inserted)});
    }
    static journal::EditTree tree(std::initializer_list<journal::NodeEdit> edits) { return {.edits = edits}; }

    void startText(std::string_view file, ReturnCounts returns = {}, const ReplayLimits& limits = {}) {
        start(EditorMode::text, file, std::move(returns), limits);
    }
    void startTree(std::string_view file, ReturnCounts returns = {}, const ReplayLimits& limits = {}) {
        start(EditorMode::tree, file, std::move(returns), limits);
    }
    void startNew() {
        auto begun = JournalReplay::start(journal::Base{.path = {}, .checksum = {}, .style = pretty}, {});
        ASSERT_TRUE(begun);
        replay.emplace(*std::move(begun));
    }

    Repeated apply(const journal::Record& record) { return replay->apply(record); }
    void repeat(std::initializer_list<journal::Record> records) {
        for (const journal::Record& record : records)
            ASSERT_TRUE(apply(record));
    }

    /// The content at the end, and its bytes in a file. The replay is over then.
    JSONContent content() {
        auto result = std::move(*replay).content();
        EXPECT_TRUE(result);
        return result ? *std::move(result) : JSONContent::empty();
    }
    std::string bytes() { return std::string(JSONDocument::fileContents(content()).view()); }
    /// The tree as compact JSON.
    std::string json() {
        const JSONContent last = content();
        EXPECT_TRUE(last.tree);
        return last.tree ? std::string(JSONSerializer::serialize(*last.tree, {}, JSONStyle::compact()).view()) : "";
    }

    std::optional<JournalReplay> replay;
    std::stop_source stop;

private:
    void start(EditorMode mode, std::string_view file, ReturnCounts returns, const ReplayLimits& limits) {
        auto begun = JournalReplay::start(base(mode, file), text(file), std::move(returns), stop.get_token(), limits);
        ASSERT_TRUE(begun);
        replay.emplace(*std::move(begun));
    }
};

} // namespace quelm
