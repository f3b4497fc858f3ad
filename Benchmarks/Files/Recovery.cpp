#include "Benchmarks/Files/FilesBenchmarks.h"
#include "Benchmarks/Files/JournaledDocument.h"
#include "Benchmarks/Harness/Report.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "TextCore/Check.h"

#include <QElapsedTimer>

namespace quelm::bench {

namespace {

constexpr int edits = 10'000;
constexpr int rounds = 5;

} // namespace

void measureRecovery(const Options& options) {
    constexpr std::string_view name = "records-100MB";
    if (name.find(options.only) == std::string_view::npos)
        return;
    JournaledDocument journaled(options, 100, EditorMode::text);
    for (int edit = 0; edit < edits; ++edit)
        journaled.replace({journaled.text().length() / edits * edit, 0}, TextRope::repairing(std::string_view("ñ")));
    const TextRope text = journaled.text().text();
    journaled.abandon();

    Samples finding;
    Samples recovering;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        std::vector<LeftBehind> found = findLeftBehind(journaled.journalFolder());
        finding.add(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        require(found.size() == 1, "the journal is found");
        timer.start();
        const auto recovered = recover(std::move(found.front()));
        recovering.add(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        require(recovered && recovered->content.text == text, "the document is recovered");
    }
    report::latency(filesLabel("find-left-behind", name), finding);
    report::latency(filesLabel("recover-10000-edits", name), recovering);
}

} // namespace quelm::bench
