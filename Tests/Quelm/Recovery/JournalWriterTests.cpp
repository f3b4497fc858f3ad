#include "Quelm/Recovery/JournalWriter.h"

#include "FileCore/JournalRecovery.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Recovery/JournalReplay.h"
#include "Quelm/Recovery/JournalSummary.h"
#include "Quelm/Recovery/JournalThread.h"
#include "Tests/FileCore/FaultySystemCalls.h"
#include "Tests/FileCore/SimulatedDisk.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What is left of a document's journals on a device that fails or loses its power at any call.

namespace quelm {
namespace {

using test::Fault;
using test::FaultySystemCalls;
using test::SimulatedDisk;

const std::string journalFolder = "/estado/recovery";
const std::string filePath = "/casa/a.json";

/// The document after that many changes: each adds a letter to the end of a new document.
std::string textOf(std::int64_t state) {
    return std::string(JSONDocument::fileContents(JSONContent::empty()).view()) +
           std::string(static_cast<std::size_t>(state), 'x');
}

journal::Base baseOf(const std::optional<std::string>& path) {
    return {.path = path, .checksum = {}, .mode = EditorMode::text, .style = JSONContent::empty().style};
}

/// A document that is changed, recorded whole anew, and saved, over those calls.
class Session {
public:
    explicit Session(SystemCalls& calls)
        : writer_(std::make_shared<JournalWriter>(
              thread_, [this](JournalWriter::Generation, SystemError) { hasFailed_ = true; }, calls)) {}
    ~Session() {
        thread_.post([last = std::move(writer_)] {});
    }

    /// Everything, until something fails; or all of it, beginning anew after each failure.
    void run(bool goesOn) {
        const std::vector<std::function<void()>> steps{
            [this] { post([this](JournalWriter& writer) { begin(writer), change(writer); }); },
            [this] { post([this](JournalWriter& writer) { change(writer), change(writer); }); },
            // Twice anew in one go: the first of them never gets to the device.
            [this] {
                post([this](JournalWriter& writer) {
                    beginWhole(writer), change(writer), beginWhole(writer), change(writer);
                });
            },
            [this] { post([this](JournalWriter& writer) { change(writer); }); },
            [this] {
                post([this](JournalWriter& writer) {
                    saved_ = state_;
                    writer.beginSave(baseOf(filePath), TextRope());
                    change(writer);
                    writer.completeSave(ContentChecksum::of(textOf(state_ - 1)));
                });
            },
            [this] {
                // The file is not touched when its state is not on the device.
                isFileSaved_ = !hasFailed_;
                post([this](JournalWriter& writer) {
                    writer.endSave({.isSaved = isFileSaved_});
                    change(writer);
                });
            },
            [this] { post([this](JournalWriter& writer) { change(writer), change(writer); }); },
        };
        for (const auto& step : steps) {
            step();
            thread_.wait();
            if (hasFailed_ && !goesOn)
                return;
            if (hasFailed_.exchange(false)) {
                post([this](JournalWriter& writer) { beginWhole(writer); });
                thread_.wait();
                EXPECT_FALSE(hasFailed_) << "one call fails, not two";
            }
            synchronized_ = state_;
        }
        isDone_ = true;
    }

    bool isDone() const { return isDone_; }
    std::int64_t state() const { return state_; }
    /// The last that is on the device.
    std::int64_t synchronized() const { return synchronized_; }
    /// What the file holds, if it was saved.
    std::optional<std::string> file() const {
        return isFileSaved_ ? std::optional(textOf(saved_)) : std::nullopt;
    }

private:
    void post(const std::function<void(JournalWriter&)>& work) {
        thread_.post([this, work] { work(*writer_); });
    }
    void begin(JournalWriter& writer) {
        ++generation_;
        writer.begin(journalFolder + '/' + std::to_string(generation_) + ".journal", generation_,
                     baseOf(std::nullopt));
    }
    void beginWhole(JournalWriter& writer) {
        begin(writer);
        writer.append(journal::Replace{.hasText = true, .text = {literal(textOf(state_))}});
    }
    void change(JournalWriter& writer) {
        const auto end = static_cast<std::int64_t>(textOf(state_).size());
        writer.append(journal::EditText{.location = end, .removed = 0, .inserted = {literal("x")}});
        ++state_;
    }
    static journal::TextSource literal(const std::string& bytes) {
        return {.origin = journal::TextSource::Origin::literal, .bytes = SharedText(bytes)};
    }

    JournalThread thread_;
    std::shared_ptr<JournalWriter> writer_;
    JournalWriter::Generation generation_ = 0;
    std::atomic<bool> hasFailed_ = false;
    bool isDone_ = false;
    bool isFileSaved_ = false;
    std::int64_t state_ = 0;
    std::int64_t saved_ = 0;
    std::int64_t synchronized_ = 0;
};

/// The state to which that journal leads; -1 when it leads to none.
std::int64_t stateIn(const JournalContents& contents, const std::optional<std::string>& file) {
    const JournalSummary summary = JournalSummary::of(contents);
    for (std::size_t index = summary.starts.size(); index-- > 0;) {
        const JournalSummary::Start& start = summary.starts[index];
        const bool isOfFile = start.base.checksum.has_value();
        if (isOfFile && (!file || ContentChecksum::of(*file) != *start.base.checksum))
            continue;
        auto replay = JournalReplay::start(start.base, isOfFile ? SharedText(*file) : SharedText());
        if (!replay)
            return -1;
        for (std::size_t record = start.record; record < summary.recordCount; ++record) {
            const auto decoded = journal::decode(contents.records[record]);
            EXPECT_TRUE(decoded && replay->apply(*decoded)) << "record " << record;
        }
        const auto content = std::move(*replay).content();
        EXPECT_TRUE(content);
        const std::string text(JSONDocument::fileContents(*content).view());
        const auto state = static_cast<std::int64_t>(text.size() - textOf(0).size());
        EXPECT_EQ(text, textOf(state));
        return state;
    }
    return -1;
}

/// The latest state that any of the journals leads to.
std::int64_t latestState(SimulatedDisk& disk, const std::optional<std::string>& file) {
    std::int64_t latest = file ? static_cast<std::int64_t>(file->size() - textOf(0).size()) : 0;
    for (const std::string& name : disk.names(journalFolder)) {
        auto journal = JournalRecovery::open(journalFolder + '/' + name, disk);
        EXPECT_TRUE(journal && *journal) << name;
        if (journal && *journal)
            latest = std::max(latest, stateIn((*journal)->contents(), file));
    }
    return latest;
}

void prepare(SimulatedDisk& disk) {
    disk.addFolder("/estado", 0700);
    disk.addFolder("/casa");
}

TEST(JournalWriterFaults, AfterALossOfPowerAtAnyCallWhatWasSynchronizedComesBack) {
    constexpr std::uint32_t lossesPerCall = 30;
    for (int n = 0;; ++n) {
        SimulatedDisk disk;
        prepare(disk);
        // From there on nothing reaches the disk.
        FaultySystemCalls calls(Fault::failing(EIO).from(n), disk);
        Session session(calls);
        session.run(false);
        for (std::uint32_t seed = 0; seed < lossesPerCall; ++seed) {
            SimulatedDisk left(disk.afterPowerLoss(seed));
            const std::int64_t latest = latestState(left, session.file());
            ASSERT_GE(latest, session.synchronized()) << n << ' ' << seed << '\n' << calls.log();
            ASSERT_LE(latest, session.state()) << n << ' ' << seed;
        }
        if (!calls.hasStruck()) {
            ASSERT_TRUE(session.isDone());
            ASSERT_GT(n, 40);
            return;
        }
    }
}

TEST(JournalWriterFaults, AfterAnyCallThatFailsANewJournalHoldsEverything) {
    for (const int code : {ENOSPC, EIO}) {
        for (int n = 0;; ++n) {
            SimulatedDisk disk;
            prepare(disk);
            FaultySystemCalls calls(Fault::failing(code).at(n), disk);
            std::optional<std::string> file;
            std::int64_t state = 0;
            {
                Session session(calls);
                session.run(true);
                ASSERT_TRUE(session.isDone());
                file = session.file();
                state = session.state();
            }
            for (std::uint32_t seed = 0; seed < 10; ++seed) {
                SimulatedDisk left(disk.afterPowerLoss(seed));
                ASSERT_EQ(latestState(left, file), state) << n << ' ' << seed << '\n' << calls.log();
            }
            if (!calls.hasStruck())
                break;
        }
    }
}

TEST(JournalWriterFaults, TheJournalThatTheDeviceHasStaysUntilTheNextOneIsThere) {
    SimulatedDisk disk;
    prepare(disk);
    JournalThread thread;
    FaultySystemCalls calls(disk);
    const auto writer = std::make_shared<JournalWriter>(thread, [](auto, auto) {}, calls);
    const journal::Base base = baseOf(std::nullopt);
    thread.post([&] { writer->begin(journalFolder + "/1.journal", 1, base); });
    thread.wait();
    std::vector<std::string> names;
    thread.post([&] {
        writer->begin(journalFolder + "/2.journal", 2, base);
        writer->begin(journalFolder + "/3.journal", 3, base);
        names = disk.names(journalFolder);
    });
    thread.wait();
    EXPECT_EQ(names, (std::vector<std::string>{"1.journal", "3.journal"}));
    EXPECT_EQ(disk.names(journalFolder), std::vector<std::string>{"3.journal"});
}

} // namespace
} // namespace quelm
