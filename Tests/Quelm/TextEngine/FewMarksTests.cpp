#include "Quelm/TextEngine/FewMarks.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(FewMarks, TextsOfAnyLanguageStayAsTheyAre) {
    const QString text = u"añ e\u0301\u0323 नमस्ते مَّ "_qs + QString(32, u'\u0301');
    EXPECT_EQ(withFewMarks(text), text);
}

TEST(FewMarks, MarksBeyondWhatIsEverWrittenAreNotSeen) {
    const QString text = u"a"_qs + QString(1000, u'\u0301') + u"b\u0301"_qs;
    const QString few = withFewMarks(text);
    EXPECT_EQ(few.size(), text.size());
    EXPECT_EQ(few.count(u'\u0301'), 33);
    EXPECT_EQ(few.count(u'\u200D'), 968);
    EXPECT_TRUE(few.endsWith(u"b\u0301"));
}

} // namespace
} // namespace quelm
