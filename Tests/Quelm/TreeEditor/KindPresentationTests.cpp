#include "Quelm/TreeEditor/KindPresentation.h"
#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(KindPresentationTests, EveryKindHasItsColourBadgeAndName) {
    struct Expected {
        NodeKind kind;
        ColorRole color;
        const char* badge;
        const char* name;
    };
    for (const Expected& expected : {Expected{NodeKind::object, ColorRole::purple, "{ }", "Objeto"},
                                     Expected{NodeKind::array, ColorRole::indigo, "[ ]", "Arreglo"},
                                     Expected{NodeKind::string, ColorRole::green, "abc", "Texto"},
                                     Expected{NodeKind::number, ColorRole::blue, "123", "Número"},
                                     Expected{NodeKind::bool_, ColorRole::orange, "0|1", "Booleano"},
                                     Expected{NodeKind::null, ColorRole::gray, "∅", "Nulo"}}) {
        EXPECT_EQ(kindColor(expected.kind), expected.color);
        EXPECT_EQ(kindBadge(expected.kind), QString::fromUtf8(expected.badge));
        EXPECT_EQ(kindName(expected.kind), QString::fromUtf8(expected.name));
    }
}

} // namespace
} // namespace quelm
