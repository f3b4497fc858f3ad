#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Window/ProgramStart.h"
#include "Benchmarks/Window/WindowBenchmarks.h"

#include <fstream>

namespace quelm::bench {

namespace {

namespace fs = std::filesystem;

constexpr ContestRules rules{.fewestRounds = 31, .mostRounds = 31, .freedMemory = FreedMemory::kept};

std::string makeSmallFile(const fs::path& folder) {
    const fs::path file = folder / "small.json";
    std::ofstream(file) << R"({"name":"Quelm","version":1,"tags":["json","editor"],"open":true,"parent":null})";
    return file.string();
}

void reportRatio(const std::string& what, const ContestResult& ours, const ContestResult& peer) {
    if (ours.seconds.empty() || peer.seconds.empty())
        report::skipped(what, peer.name, "a window was not painted");
    else
        report::durationRatio(what, peer.name, ours.seconds, peer.seconds);
}

} // namespace

void measureStart() {
    const ScreenServer screen;
    const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
    const ProgramStart start(screen, programs / "libquelm-first-paint.so");
    const auto contestant = [&](std::string name, std::vector<std::string> arguments) {
        arguments.front() = (programs / arguments.front()).string();
        return Contestant{std::move(name), [&start, arguments] { return start.secondsToFirstPaint(arguments); }};
    };
    const auto results =
        hold({contestant("new", {"quelm"}), contestant("file", {"quelm", makeSmallFile(start.folder())}),
              contestant("empty-window", {"quelm-empty-window"}),
              contestant("window-with-a-menu", {"quelm-empty-window", "--menu"})},
             rules);
    for (const std::size_t ours : {0U, 1U})
        for (const std::size_t peer : {2U, 3U})
            reportRatio(windowLabel("start-" + results[ours].name, screen.name()), results[ours], results[peer]);
}

} // namespace quelm::bench
