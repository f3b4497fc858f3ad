#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/JSON/JSONBenchmarks.h"
#include "Benchmarks/JSON/SameOutput.h"

#include <array>
#include <map>

namespace quelm::bench {

namespace {

constexpr int roundsOfSlowOnes = 3;

struct NamedLayout {
    WriteLayout layout;
    std::string_view measurement;
};

constexpr std::array layouts = std::to_array<NamedLayout>({{WriteLayout::pretty, "write-pretty"},
                                                           {WriteLayout::compact, "write-compact"},
                                                           {WriteLayout::sorted, "write-sorted"}});

/// Writes the document of a text while the object lives.
class WrittenOnce {
public:
    WrittenOnce(JSONLibrary& library, std::string_view text, WriteLayout layout) : library_(library) {
        if (library.parseForWriting(text))
            seconds_ = secondsOf([&] { isWritten_ = library.write(layout); });
        keep(library);
    }
    ~WrittenOnce() {
        library_.discardOutput();
        library_.discardDocument();
    }
    WrittenOnce(const WrittenOnce&) = delete;
    WrittenOnce& operator=(const WrittenOnce&) = delete;

    std::optional<double> seconds() const { return isWritten_ ? std::optional(seconds_) : std::nullopt; }
    std::string_view output() const { return isWritten_ ? library_.output() : std::string_view(); }

private:
    JSONLibrary& library_;
    double seconds_ = 0;
    bool isWritten_ = false;
};

/// One layout of one document.
class WritingContest {
public:
    WritingContest(Subject& subject, const NamedLayout& layout)
        : subject_(subject), layout_(layout.layout), label_(subject.label(layout.measurement)) {}

    void run() {
        enter(subject_.ours);
        for (const auto& peer : subject_.peers)
            if (peer->canWrite(layout_) && isComparable(*peer))
                enter(*peer);
        const std::vector<ContestResult> results = hold(contestants_, subject_.contestRules());
        for (auto peer = results.begin() + 1; peer != results.end(); ++peer)
            print(results.front(), *peer);
    }

private:
    bool isComparable(JSONLibrary& peer) {
        if (!peer.writesNumbersAsGiven())
            return true;
        const WrittenOnce ours(subject_.ours, subject_.text.view(), layout_);
        const WrittenOnce theirs(peer, subject_.text.view(), layout_);
        const std::optional<std::size_t> difference = firstDifference(ours.output(), theirs.output());
        if (difference)
            report::skipped(label_, peer.name(), "its output differs from ours at byte " + std::to_string(*difference));
        return !difference;
    }

    void enter(JSONLibrary& library) {
        double& bytes = outputBytes_[std::string(library.name())];
        contestants_.push_back({std::string(library.name()),
                                [this, &library, &bytes] {
                                    const WrittenOnce written(library, subject_.text.view(), layout_);
                                    bytes = static_cast<double>(written.output().size());
                                    return written.seconds();
                                },
                                library.isSlow() ? roundsOfSlowOnes : 1000});
    }

    void print(const ContestResult& ours, const ContestResult& peer) {
        if (peer.seconds.empty())
            report::skipped(label_, peer.name, "it could not write the document");
        else
            report::ratio(label_, peer.name, {outputBytes_[ours.name], ours.seconds.median()},
                          {outputBytes_[peer.name], peer.seconds.median()});
    }

    Subject& subject_;
    WriteLayout layout_;
    std::string label_;
    std::map<std::string, double> outputBytes_;
    std::vector<Contestant> contestants_;
};

} // namespace

void measureWriting(Subject& subject) {
    for (const NamedLayout& layout : layouts)
        WritingContest(subject, layout).run();
}

} // namespace quelm::bench
