#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

TextRope rope(QStringView text) {
    return TextRope::repairing(std::u16string_view(text.utf16(), static_cast<std::size_t>(text.size())));
}

QString wholeString(const TextStorage& storage) {
    return storage.string({0, storage.length()});
}

struct Announcement {
    EditedMask mask;
    TextRange range;
    qint64 delta;
    friend bool operator==(const Announcement&, const Announcement&) = default;
};

class TextStorageTests : public testing::Test {
protected:
    void start(QStringView text) {
        storage.emplace(rope(text));
        QObject::connect(
            &*storage, &TextStorage::didProcessEditing, &*storage,
            [this](EditedMask mask, TextRange range, qint64 delta) { announced.push_back({mask, range, delta}); });
    }

    std::optional<TextStorage> storage;
    std::vector<Announcement> announced;
};

TEST_F(TextStorageTests, AStorageBeginsEmptyWithOneLine) {
    const TextStorage empty;
    EXPECT_EQ(empty.length(), 0);
    EXPECT_EQ(empty.lineCount(), 1);
    EXPECT_EQ(empty.attributes().length(), 0);
    EXPECT_EQ(empty.lineRange({0, 0}), (TextRange{0, 0}));
    EXPECT_EQ(empty.lineContents(0), (TextRange{0, 0}));
}

TEST_F(TextStorageTests, AnEditIsAnnouncedWithWhatItCoversNowAndTheGrowth) {
    start(u"{\"a\": 1}");
    storage->replaceCharacters({6, 1}, QStringView(u"true"));
    EXPECT_EQ(wholeString(*storage), u"{\"a\": true}");
    EXPECT_EQ(announced, (std::vector<Announcement>{{EditedMask::characters, {6, 4}, 3}}));
    EXPECT_EQ(storage->attributes().length(), storage->length());
}

TEST_F(TextStorageTests, AnEditOfNothingIsAnEditNonetheless) {
    start(u"abc");
    storage->replaceCharacters({2, 0}, TextRope());
    EXPECT_EQ(announced, (std::vector<Announcement>{{EditedMask::characters, {2, 0}, 0}}));
}

TEST_F(TextStorageTests, ReceiversSeeTheTextAndAttributesAsTheyAreAfterTheEdit) {
    start(u"abc");
    QString seen;
    qint64 attributed = 0;
    QObject::connect(&*storage, &TextStorage::didProcessEditing, &*storage, [&] {
        seen = wholeString(*storage);
        attributed = storage->attributes().length();
    });
    storage->replaceCharacters({1, 1}, QStringView(u"xyz"));
    EXPECT_EQ(seen, u"axyzc");
    EXPECT_EQ(attributed, 5);
}

TEST_F(TextStorageTests, NewCharactersHaveTheBaseAttributes) {
    start(u"abcd");
    storage->setAttributes({0, 4}, {ColorRole::green});
    storage->replaceCharacters({2, 0}, QStringView(u"xy"));
    EXPECT_EQ(storage->attributes().runAfter(2).run, (AttributeRun{2, {}, false}));
    EXPECT_EQ(storage->attributes().runAfter(4).run.attributes.foreground, ColorRole::green);
}

TEST_F(TextStorageTests, AttributesAreAnnouncedAsOneEditThatChangesNoCharacters) {
    start(u"abcdef");
    storage->setAttributes({1, 2}, {ColorRole::blue});
    storage->setAttributes(3, std::vector<AttributeRun>{{1, {ColorRole::green}, true}, {1, {ColorRole::gray}, true}});
    EXPECT_EQ(announced,
              (std::vector<Announcement>{{EditedMask::attributes, {1, 2}, 0}, {EditedMask::attributes, {3, 2}, 0}}));
    EXPECT_EQ(storage->attributes().runAfter(4).run, (AttributeRun{1, {ColorRole::gray}, true}));
    EXPECT_EQ(storage->attributes().runAfter(1).run, (AttributeRun{2, {ColorRole::blue}, false}));
}

TEST_F(TextStorageTests, AttributesForNoCharactersAreNoEdit) {
    start(u"abc");
    storage->setAttributes({1, 0}, {ColorRole::blue});
    storage->setAttributes(1, std::vector<AttributeRun>{});
    EXPECT_TRUE(announced.empty());
}

TEST_F(TextStorageTests, AReceiverMaySetAttributes) {
    start(u"abc");
    QObject::connect(&*storage, &TextStorage::didProcessEditing, &*storage, [&](EditedMask mask, TextRange range) {
        if (mask == EditedMask::characters)
            storage->setAttributes(range, {ColorRole::red});
    });
    storage->replaceCharacters({0, 1}, QStringView(u"xy"));
    EXPECT_EQ(storage->attributes().runAfter(0).run.attributes.foreground, ColorRole::red);
    EXPECT_EQ(announced.size(), 2u);
    storage->replaceCharacters({0, 1}, QStringView(u"z"));
    EXPECT_EQ(wholeString(*storage), u"zybc") << "edits after an announcement are as good as before";
}

TEST_F(TextStorageTests, AReceiverThatChangesCharactersIsAProgrammingError) {
    start(u"abc");
    QObject::connect(&*storage, &TextStorage::didProcessEditing, &*storage,
                     [&] { storage->replaceCharacters({0, 1}, TextRope()); });
    EXPECT_DEATH(storage->replaceCharacters({0, 1}, TextRope()), "receivers of an edit of characters");
}

TEST_F(TextStorageTests, AnEditOutsideOfTheTextIsAProgrammingError) {
    start(u"abc");
    EXPECT_DEATH(storage->replaceCharacters({2, 2}, TextRope()), "");
}

TEST_F(TextStorageTests, LoneSurrogatesAreReplaced) {
    start(u"ab");
    const QString units = QStringLiteral("x") + QChar(0xD83D) + QStringLiteral("y") + QChar(0xDE00);
    storage->replaceCharacters({1, 0}, units);
    EXPECT_EQ(wholeString(*storage), u"ax\uFFFDy\uFFFDb");
    EXPECT_EQ(announced.back().range, (TextRange{1, 4}));
}

TEST_F(TextStorageTests, PlacesWithinAPairAreTakenBackToItsStart) {
    start(u"a\U0001F600b");
    EXPECT_EQ(storage->length(), 4);
    EXPECT_EQ(storage->string({0, 2}), u"a");
    EXPECT_EQ(storage->string({2, 1}), u"\U0001F600");
    EXPECT_EQ(storage->string({2, 0}), u"");

    storage->replaceCharacters({2, 0}, QStringView(u"x"));
    EXPECT_EQ(wholeString(*storage), u"ax\U0001F600b");
    EXPECT_EQ(announced.back(), (Announcement{EditedMask::characters, {1, 1}, 1}));

    storage->replaceCharacters({3, 1}, TextRope());
    EXPECT_EQ(wholeString(*storage), u"axb");
    EXPECT_EQ(announced.back(), (Announcement{EditedMask::characters, {2, 0}, -2}));
}

TEST_F(TextStorageTests, AttributesOfHalfAPairAreThoseOfTheCharactersWithinTheTakenBackStretch) {
    start(u"a\U0001F600b");
    storage->setAttributes({0, 2}, {ColorRole::green});
    EXPECT_EQ(announced.back().range, (TextRange{0, 1}));
}

TEST_F(TextStorageTests, AByteOrderMarkIsACharacterLikeOthers) {
    start(u"\uFEFFa\uFEFF");
    EXPECT_EQ(wholeString(*storage), u"\uFEFFa\uFEFF");
    EXPECT_EQ(storage->string({0, 1}), u"\uFEFF");
}

TEST_F(TextStorageTests, LinesEndWithALineFeedOnly) {
    start(u"a\r\nbc\u2028d\n");
    EXPECT_EQ(storage->lineCount(), 3);
    EXPECT_EQ(storage->lineAt(0), 0);
    EXPECT_EQ(storage->lineAt(2), 0);
    EXPECT_EQ(storage->lineAt(3), 1);
    EXPECT_EQ(storage->lineAt(8), 2);
    EXPECT_EQ(storage->lineStart(1), 3);
    EXPECT_EQ(storage->lineStart(2), 8);
    EXPECT_EQ(storage->lineContents(0), (TextRange{0, 2}));
    EXPECT_EQ(storage->lineContents(1), (TextRange{3, 4}));
    EXPECT_EQ(storage->lineContents(2), (TextRange{8, 0}));
}

TEST_F(TextStorageTests, AStretchTouchesTheLinesOfItsCharacters) {
    start(u"ab\ncd\nef");
    EXPECT_EQ(storage->lineRange({0, 0}), (TextRange{0, 3}));
    EXPECT_EQ(storage->lineRange({2, 1}), (TextRange{0, 3})) << "a line feed belongs to the line that it ends";
    EXPECT_EQ(storage->lineRange({3, 0}), (TextRange{3, 3}));
    EXPECT_EQ(storage->lineRange({2, 2}), (TextRange{0, 6}));
    EXPECT_EQ(storage->lineRange({8, 0}), (TextRange{6, 2}));
    start(u"ab\n");
    EXPECT_EQ(storage->lineRange({3, 0}), (TextRange{3, 0}));
    EXPECT_EQ(storage->lineRange({0, 3}), (TextRange{0, 3}));
}

/// `offset`, or the start of the pair that it is within.
qsizetype takenBack(const QString& text, qsizetype offset) {
    const bool isWithin = offset > 0 && offset < text.size() && text[offset].isLowSurrogate();
    return isWithin ? offset - 1 : offset;
}

void expectEqual(const TextStorage& storage, const QString& model) {
    storage.text().checkInvariants();
    storage.attributes().checkInvariants();
    ASSERT_EQ(storage.length(), model.size());
    ASSERT_EQ(storage.attributes().length(), model.size());
    ASSERT_EQ(wholeString(storage), model);
    ASSERT_EQ(storage.lineCount(), model.count(u'\n') + 1);
}

TEST_F(TextStorageTests, RandomEditsGiveWhatTheSameEditsOfAStringGive) {
    const std::vector<QString> pieces{QStringLiteral("a"),          QStringLiteral("\n"),
                                      QStringLiteral("ñ"),          QStringLiteral("\u20AC"),
                                      QStringLiteral("\U0001F600"), QStringLiteral("\"clave\": [1, 2]\r\n")};
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto below = [&](qsizetype bound) {
            return static_cast<qsizetype>(random() % static_cast<std::uint64_t>(bound));
        };
        start(u"");
        QString model;
        for (int edit = 0; edit < 300; ++edit) {
            const qsizetype location = below(model.size() + 1);
            const qsizetype length = below(std::min<qsizetype>(model.size() - location, 12) + 1);
            QString inserted;
            for (qsizetype count = below(8); count > 0; --count)
                inserted += pieces[static_cast<std::size_t>(below(static_cast<qsizetype>(pieces.size())))];

            const qsizetype from = takenBack(model, location);
            const qsizetype to = takenBack(model, location + length);
            model.replace(from, to - from, inserted);
            storage->replaceCharacters({location, length}, inserted);
            ASSERT_EQ(announced.back(),
                      (Announcement{EditedMask::characters, {from, inserted.size()}, inserted.size() - (to - from)}));
            expectEqual(*storage, model);

            const qsizetype place = below(model.size() + 1);
            const qsizetype lineFeed = place == 0 ? -1 : model.lastIndexOf(u'\n', place - 1);
            ASSERT_EQ(storage->lineAt(place), model.left(place).count(u'\n'));
            ASSERT_EQ(storage->lineStart(storage->lineAt(place)), lineFeed + 1);
            if (HasFatalFailure())
                return;
        }
    }
}

} // namespace
} // namespace quelm
