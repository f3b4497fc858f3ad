#include "Quelm/TextEditor/SyntaxHighlighter.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/TextEditor/ColorLetters.h"
#include "Tests/Quelm/TextEditor/PlainColors.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

using test::colors;

/// Random edits of a storage and of its plain colours.
class RandomColoring {
public:
    RandomColoring(unsigned seed, qsizetype longestText, const SyntaxScanSizes& sizes = {})
        : random_(seed), longestText_(longestText), highlighter_(sizes) {
        QObject::connect(&storage_, &TextStorage::didProcessEditing, &storage_,
                         [this](EditedMask mask, TextRange range) {
                             if (mask == EditedMask::characters)
                                 edited_ = range;
                         });
    }

    void insertMuch(qsizetype length) {
        QString much;
        while (much.size() < length)
            much += somePiece();
        plain_.replace(0, 0, much);
        storage_.replaceCharacters({0, 0}, much);
        highlight(edited_);
    }

    void step() {
        for (qsizetype edits = below(4) == 0 ? 1 + below(3) : 1; edits > 0; --edits)
            edit();
        if (below(40) == 0)
            paintSomewhere();
        if (below(10) == 0)
            highlightSomewhere();
        if (below(10) != 0)
            highlight(edited_);
    }

    void compare() {
        storage_.attributes().checkInvariants();
        ASSERT_EQ(storage_.string({0, storage_.length()}).toStdString(), plain_.text.toStdString());
        ASSERT_EQ(colors(storage_), plain_.letters) << plain_.text.toStdString();
    }

private:
    qsizetype below(qsizetype bound) { return static_cast<qsizetype>(random_() % static_cast<std::uint64_t>(bound)); }

    QString somePiece() {
        static const std::vector<QString> words{QStringLiteral("true"),
                                                QStringLiteral("false"),
                                                QStringLiteral("null"),
                                                QStringLiteral("\"a\": "),
                                                QStringLiteral("\\\""),
                                                QStringLiteral("\\\n"),
                                                QStringLiteral("\"b\"\t: "),
                                                QStringLiteral("ñ"),
                                                QStringLiteral("\U0001F600"),
                                                QStringLiteral("\n"),
                                                QStringLiteral("\""),
                                                QStringLiteral("    "),
                                                QStringLiteral("\n  \"c\": [1, {\"d\": null}],")};
        static const QString alphabet = QStringLiteral("\"\\:,[]{}tru fals n0-1e.+ \t\nxA");
        if (below(4) == 0)
            return words[static_cast<std::size_t>(below(static_cast<qsizetype>(words.size())))];
        return QString(alphabet[below(alphabet.size())]);
    }

    qsizetype somePlace() { return wholeCharacter(below(plain_.text.size() + 1)); }

    qsizetype wholeCharacter(qsizetype place) const {
        const bool isWithin = place > 0 && place < plain_.text.size() && plain_.text[place].isLowSurrogate();
        return isWithin ? place - 1 : place;
    }

    void edit() {
        const qsizetype location = somePlace();
        qsizetype length = below(2) == 0 ? 0 : below(4);
        if (plain_.text.size() > 150 && below(4) == 0)
            length = below(40);
        length = wholeCharacter(std::min(location + length, plain_.text.size())) - location;
        QString inserted;
        for (qsizetype count = below(10) == 0 ? below(20) : below(3); count > 0; --count)
            inserted += somePiece();
        plain_.replace(location, length, inserted);
        storage_.replaceCharacters({location, length}, inserted);
    }

    void paintSomewhere() {
        const qsizetype start = somePlace();
        const qsizetype end = std::max(start, wholeCharacter(std::min(start + below(10), plain_.text.size())));
        plain_.paint(start, end, 'r');
        storage_.setAttributes({start, end - start}, {ColorRole::red});
    }

    void highlightSomewhere() {
        const qsizetype start = somePlace();
        const qsizetype end = somePlace();
        highlight(TextRange::between(std::min(start, end), std::max(start, end)));
    }

    void highlight(TextRange range) {
        plain_.highlight(range.location, range.end(), longestText_);
        highlighter_.highlight(storage_, range, longestText_);
    }

    std::mt19937 random_;
    qsizetype longestText_;
    SyntaxHighlighter highlighter_;
    TextStorage storage_;
    test::PlainColors plain_;
    TextRange edited_;
};

void colorAtRandom(unsigned rounds, int steps, qsizetype longestText) {
    for (unsigned seed = 1; seed <= rounds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomColoring coloring(seed, longestText);
        for (int step = 0; step < steps; ++step) {
            coloring.step();
            coloring.compare();
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

TEST(SyntaxHighlighterModel, RandomEditsGiveTheColoursOfAPlainScan) {
    colorAtRandom(60, 400, 10'000);
}

TEST(SyntaxHighlighterModel, RandomEditsGiveTheColoursOfAPlainScanWhenTheTextGrowsTooLongAndShrinks) {
    colorAtRandom(60, 400, 120);
}

TEST(SyntaxHighlighterModel, RandomEditsOfALongerTextGiveTheColoursOfAPlainScan) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomColoring coloring(seed, 100'000);
        coloring.insertMuch(8000);
        for (int step = 0; step < 200 && !testing::Test::HasFatalFailure(); ++step) {
            coloring.step();
            coloring.compare();
        }
    }
}

/// Sizes with which chunks are made, met and cut all the time.
SyntaxScanSizes tinySizes(unsigned seed) {
    return {.leastLeap = 1 + seed % 40, .leastScan = 1 + seed % 17, .leastChunk = 1 + seed % 7, .mostInChunk = 30};
}

TEST(SyntaxHighlighterModel, RandomEditsGiveTheColoursOfAPlainScanWhenMostColoursAreDerived) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomColoring coloring(seed, 10'000, tinySizes(seed));
        coloring.insertMuch(200);
        for (int step = 0; step < 200 && !testing::Test::HasFatalFailure(); ++step) {
            coloring.step();
            coloring.compare();
        }
    }
}

TEST(SyntaxHighlighterModel, RandomEditsOfALongerTextGiveTheColoursOfAPlainScanWhenMostColoursAreDerived) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomColoring coloring(seed, 100'000, tinySizes(seed));
        coloring.insertMuch(8000);
        for (int step = 0; step < 200 && !testing::Test::HasFatalFailure(); ++step) {
            coloring.step();
            coloring.compare();
        }
    }
}

/// The runs of a storage, with whether they are settled.
std::vector<AttributeRun> runs(const TextStorage& storage) {
    std::vector<AttributeRun> all;
    storage.attributes().forEach({0, storage.length()},
                                 [&](const AttributeRuns::PlacedRun& placed) { all.push_back(placed.run); });
    return all;
}

TEST(SyntaxHighlighterModel, DerivedRunsAreTheRunsOfAScan) {
    constexpr SyntaxScanSizes eager{.leastScan = SyntaxHighlighter::longestColoredText};
    const QString alphabet = QStringLiteral("\"\"\"\\:,[]{}tru fals n0-1e.+  \t\nxA\u00F1");
    qint64 chunksMet = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        // Without the last characters some texts have no line feeds, or no blanks.
        const auto letters = static_cast<std::uint32_t>(alphabet.size()) - (seed % 4) * 2;
        QString text;
        for (int i = 0; i < 200; ++i)
            text += alphabet[static_cast<qsizetype>(random() % letters)];
        TextStorage derived(TextRope::repairing(std::u16string_view(text.toStdU16String())));
        TextStorage scanned(derived.text());
        SyntaxHighlighter(tinySizes(seed)).highlight(derived, {0, derived.length()});
        SyntaxHighlighter(eager).highlight(scanned, {0, scanned.length()});
        derived.attributes().checkInvariants();
        ASSERT_EQ(runs(derived), runs(scanned)) << text.toStdString();
        chunksMet += scanned.attributes().count() - derived.attributes().count();
    }
    EXPECT_GT(chunksMet, 50'000) << "many runs were left to be derived";
}

} // namespace
} // namespace quelm
