#include "TextCore/TextRope.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

TEST(TextRope, ADefaultTextIsEmptyAndPaddedWhenMadeContiguous) {
    const TextRope text;
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.byteCount(), 0);
    EXPECT_EQ(text.contiguous().view(), "");
    EXPECT_TRUE(text.contiguous().isPadded());
}

TEST(TextRope, CountsBytes) {
    EXPECT_EQ(TextRope(SharedText("ma\u00F1ana")).byteCount(), 7);
    EXPECT_FALSE(TextRope(SharedText("x")).isEmpty());
}

TEST(TextRope, APaddedTextIsSharedNotCopied) {
    const SharedText padded("{\"clave\": 1}");
    const TextRope text(padded);
    EXPECT_TRUE(text.contiguous().isSamePiece(padded));
    EXPECT_TRUE(TextRope(text).contiguous().isSamePiece(padded));
    EXPECT_TRUE(TextRope(text).isSameValue(text));
}

TEST(TextRope, AnUnpaddedTextBecomesAPaddedCopy) {
    const SharedText whole("[1, 2]");
    const SharedText contiguous = TextRope(whole.slice(0, 3)).contiguous();
    EXPECT_EQ(contiguous.view(), "[1,");
    EXPECT_TRUE(contiguous.isPadded());
}

TEST(TextRope, EqualityIsThatOfBytes) {
    const TextRope text(SharedText("ma\u00F1ana"));
    EXPECT_EQ(text, TextRope(SharedText("ma\u00F1ana")));
    EXPECT_FALSE(text.isSameValue(TextRope(SharedText("ma\u00F1ana"))));
    EXPECT_NE(text, TextRope(SharedText("man\u0303ana"))) << "canonically equivalent, other bytes";
    EXPECT_NE(text, TextRope());
}

TEST(TextRope, RepairingKeepsValidTextAndReplacesTheRest) {
    EXPECT_EQ(TextRope::repairing("ma\u00F1ana").contiguous().view(), "ma\u00F1ana");
    EXPECT_EQ(TextRope::repairing("ma\xF1"
                                  "ana")
                  .contiguous()
                  .view(),
              "ma\uFFFDana");
    EXPECT_EQ(TextRope::repairing("\xE2\x82").contiguous().view(), "\uFFFD");
    EXPECT_TRUE(TextRope::repairing("").isEmpty());
}

TEST(TextRope, RepairingCopiesTheBytes) {
    std::string bytes = "abc";
    const TextRope text = TextRope::repairing(bytes);
    bytes = "xyz";
    EXPECT_EQ(text.contiguous().view(), "abc");
}

} // namespace
} // namespace quelm
