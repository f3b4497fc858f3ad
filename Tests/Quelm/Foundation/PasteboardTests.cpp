#include "Quelm/Foundation/Pasteboard.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

class PasteboardTests : public testing::Test {
protected:
    PasteboardTests() { clipboard()->clear(); }

    static QClipboard* clipboard() { return QGuiApplication::clipboard(); }
    static std::optional<std::string> bytes() {
        const auto text = Pasteboard::general().string();
        return text ? std::optional(std::string(text->contiguous().view())) : std::nullopt;
    }
    /// What another program would have put there.
    static void putForeign(const QString& text) { clipboard()->setText(text); }
};

TEST_F(PasteboardTests, WithoutATextThereIsNone) {
    EXPECT_EQ(bytes(), std::nullopt);
    auto* picture = new QMimeData;
    picture->setData(QStringLiteral("image/png"), QByteArrayLiteral("\x89PNG"));
    clipboard()->setMimeData(picture);
    EXPECT_EQ(bytes(), std::nullopt);
}

TEST_F(PasteboardTests, AnEmptyTextIsAText) {
    Pasteboard::general().setString(TextRope());
    EXPECT_EQ(bytes(), "");
}

TEST_F(PasteboardTests, TheTextOfAnotherProgramIsReadAsItIs) {
    putForeign(QStringLiteral("ñ\r\n\u2028😀"));
    EXPECT_EQ(bytes(), "ñ\r\n\u2028😀");
    putForeign(QStringLiteral("\uFEFF[1]"));
    EXPECT_EQ(bytes(), "\uFEFF[1]");
}

TEST_F(PasteboardTests, LoneSurrogatesAreReplaced) {
    const char16_t units[] = {u'a', 0xD83D, u'b', 0xDE00};
    putForeign(QString::fromUtf16(units, std::size(units)));
    EXPECT_EQ(bytes(), "a\uFFFDb\uFFFD");
}

TEST_F(PasteboardTests, WhatThisProgramPutThereComesBackWithoutAConversion) {
    const TextRope text(SharedText(std::string_view("{\"a\":1}")));
    Pasteboard::general().setString(text);
    const auto read = Pasteboard::general().string();
    ASSERT_TRUE(read.has_value());
    EXPECT_TRUE(read->isSameValue(text));
}

TEST_F(PasteboardTests, OtherProgramsAreGivenEveryCharacter) {
    using namespace std::string_view_literals;
    Pasteboard::general().setString(TextRope(SharedText("\uFEFFa\0ñ😀\r\n"sv)));
    const char16_t units[] = {0xFEFF, u'a', 0, 0xF1, 0xD83D, 0xDE00, u'\r', u'\n'};
    EXPECT_EQ(clipboard()->text(), QString::fromRawData(reinterpret_cast<const QChar*>(units), std::size(units)));
}

TEST_F(PasteboardTests, ANewTextTakesThePlaceOfWhateverWasThere) {
    auto* rich = new QMimeData;
    rich->setText(QStringLiteral("viejo"));
    rich->setHtml(QStringLiteral("<b>viejo</b>"));
    clipboard()->setMimeData(rich);
    Pasteboard::general().setString(TextRope(SharedText(std::string_view("nuevo"))));
    EXPECT_EQ(bytes(), "nuevo");
    EXPECT_FALSE(clipboard()->mimeData()->hasHtml());
}

} // namespace
} // namespace quelm
