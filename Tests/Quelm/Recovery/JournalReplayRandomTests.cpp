#include "Tests/Quelm/Recovery/ReplayedJournalTest.h"

#include <array>
#include <random>

// Records that nobody wrote: whatever they say, the content stays one that a document can hold.

namespace quelm {
namespace {

class RandomRecords : public ReplayedJournalTest {
protected:
    std::int64_t below(std::int64_t limit) {
        return static_cast<std::int64_t>(random_() % static_cast<unsigned>(limit));
    }
    bool oneIn(std::int64_t times) { return below(times) == 0; }
    /// Small as a rule, so that it is right now and then.
    std::int64_t number(std::int64_t limit) { return oneIn(20) ? below(1'000'000) - 500'000 : below(limit); }

    SharedText bytes() {
        static constexpr std::array<std::string_view, 9> texts{"",  "1",       "[1,2]", "{\"a\":[]}", "\xC3\xB1",
                                                               "x", "\"\\n\"", "true",  "\xC3"};
        return text(texts[static_cast<std::size_t>(below(std::ssize(texts)))]);
    }
    journal::NodePath path() {
        journal::NodePath path;
        for (std::int64_t length = below(4); length > 0; --length)
            path.push_back(path.empty() && !oneIn(10) ? 0 : static_cast<std::uint32_t>(number(3)));
        return path;
    }
    std::vector<journal::TextSource> sources() {
        std::vector<journal::TextSource> sources;
        for (std::int64_t count = below(4); count > 0; --count)
            sources.push_back(oneIn(2)   ? journal::TextSource{.bytes = bytes()}
                              : oneIn(2) ? fileCopy(number(8), number(8))
                                         : removedCopy(number(4), number(4)));
        return sources;
    }
    JSONStyle style() { return oneIn(3) ? JSONStyle::compact() : oneIn(2) ? pretty : sorted; }
    journal::NodeEdit nodeEdit() {
        switch (below(5)) {
        case 0:
            return journal::SetKey{path(), bytes()};
        case 1:
            return journal::SetValue{path(), allNodeKinds[static_cast<std::size_t>(below(6))], bytes()};
        case 2:
            return journal::Remove{path(), number(3)};
        case 3:
            return journal::InsertDetached{path(), number(3), number(3)};
        default:
            return journal::InsertNew{path(), number(3), bytes(), bytes()};
        }
    }
    journal::Record record() {
        switch (below(8)) {
        case 0:
            return edit(number(12), number(4), sources());
        case 1:
        case 2: {
            journal::EditTree edits;
            for (std::int64_t count = below(3) + 1; count > 0; --count)
                edits.edits.push_back(nodeEdit());
            return edits;
        }
        case 3:
            return journal::Reformat{number(4), number(4), style()};
        case 4:
            return journal::Return{number(4), number(4)};
        case 5:
            return journal::Replace{number(4), number(4), style(), oneIn(2), oneIn(2), oneIn(2), sources()};
        case 6:
            return journal::ChangeMode{oneIn(2) ? EditorMode::tree : EditorMode::text};
        default:
            return journal::Modified{oneIn(2)};
        }
    }

    std::mt19937 random_{20263};
};

TEST_F(RandomRecords, LeaveAContentThatADocumentCanHold) {
    std::int64_t repeated = 0;
    std::int64_t refused = 0;
    for (int round = 0; round < 20'000; ++round) {
        ReturnCounts returns;
        for (std::int64_t content = 0; content < 4; ++content)
            returns[content] = 5;
        oneIn(2) ? startText("{\"a\": [1, 2]}", returns) : startTree("{\"a\": [1, 2]}", returns);
        // Nothing is repeated after an error, as the contract has it.
        while (!oneIn(30)) {
            const auto applied = apply(record());
            ++(applied ? repeated : refused);
            if (!applied)
                break;
        }
        const EditorMode mode = replay->mode();
        const JSONContent last = content();
        ASSERT_TRUE(mode == EditorMode::tree ? last.tree.has_value() : last.text.has_value());
        if (last.text)
            last.text->checkInvariants();
        if (last.tree)
            last.tree->checkInvariants();
    }
    EXPECT_GT(repeated, 10'000);
    EXPECT_GT(refused, 5'000);
}

} // namespace
} // namespace quelm
