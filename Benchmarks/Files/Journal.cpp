#include "Benchmarks/Files/FilesBenchmarks.h"
#include "Benchmarks/Files/JournaledDocument.h"
#include "Benchmarks/Harness/Report.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "TextCore/Check.h"
#include "TextCore/MatchReplacement.h"

#include <QElapsedTimer>

namespace quelm::bench {

namespace {

constexpr int keys = 2000;

void measureText(const Options& options) {
    constexpr std::string_view name = "records-1000MB";
    if (name.find(options.only) == std::string_view::npos)
        return;
    JournaledDocument journaled(options, 1000, EditorMode::text);
    TextStorage& text = journaled.text();
    // The first change names the file.
    (void)journaled.growth([&] { journaled.replace({0, 0}, TextRope::repairing(std::string_view(" "))); });

    Samples samples;
    const double typing = journaled.growth([&] {
        for (int key = 0; key < keys; ++key) {
            QElapsedTimer timer;
            timer.start();
            journaled.replace({text.length() / 2 + key, 0}, TextRope::repairing(std::string_view("x")));
            samples.add(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        }
    });
    report::latency(filesLabel("journal-key", name), samples);
    report::memory(filesLabel("journal-key", name), typing / keys, "B/key");

    const TextRope whole = text.text();
    const double deleting = journaled.growth([&] {
        journaled.replace({0, text.length()}, TextRope());
        journaled.replace({0, 0}, whole);
    });
    report::memory(filesLabel("journal-delete-all-and-undo", name), deleting, "B");

    const SearchPattern pattern("9999", CaseSensitivity::sensitive);
    const auto replaced = replacingMatches(whole, pattern, "e", std::int64_t{4} << 30);
    require(replaced.has_value(), "all matches are replaced");
    const TextSummary before = whole.summaryBefore(replaced->range.location);
    const TextSummary through = whole.summaryBefore(replaced->range.end());
    const double replacing = journaled.growth(
        [&] { journaled.replace(TextRange::between(before.utf16, through.utf16), replaced->replacement); });
    report::memory(filesLabel("journal-replace-all", name), replacing / static_cast<double>(replaced->count),
                   "B/match");
}

void measureTree(const Options& options) {
    constexpr std::string_view name = "records-100MB";
    if (name.find(options.only) == std::string_view::npos)
        return;
    JournaledDocument journaled(options, 100, EditorMode::tree);
    JSONDocument& document = journaled.document();
    const JSONTree& tree = *document.content().tree;
    const ChildList records = tree.children(tree.root());
    const NodeID record = records[records.size() / 2];
    const NodeID value = tree.children(record)[0];
    (void)journaled.growth([&] { document.applyTreeEdits(std::vector{TreeEdit::setKey(value, "clave")}); });
    Samples samples;
    const double growth = journaled.growth([&] {
        for (int edit = 0; edit < keys; ++edit) {
            const std::vector edits{TreeEdit::setKey(value, "clave " + std::to_string(edit))};
            QElapsedTimer timer;
            timer.start();
            document.applyTreeEdits(edits);
            samples.add(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        }
    });
    report::latency(filesLabel("journal-rename", name), samples);
    report::memory(filesLabel("journal-rename", name), growth / keys, "B/edit");
    const double format = journaled.growth([&] {
        auto content = ContentConversion::reformat(document.snapshot(), JSONStyle::compact(), {});
        require(content.has_value(), "the document is formatted");
        document.replaceContent(*std::move(content), nullptr, ContentOrigin::reformatting);
    });
    report::memory(filesLabel("journal-format", name), format, "B");
}

} // namespace

void measureJournal(const Options& options) {
    measureText(options);
    measureTree(options);
}

} // namespace quelm::bench
