#include "JSONCore/JSONSerializer.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Random.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;
using test::parsed;
using test::written;

constexpr JSONStyle sorted = JSONStyle::pretty(Indent::twoSpaces, true);

/// The text written with sorted keys, then compacted.
std::string inOrder(std::string_view text) {
    return written(parsed(written(parsed(text), sorted)));
}

TEST(JSONSerializerSorting, OrdersASCIIKeysByTheirBytes) {
    EXPECT_EQ(inOrder(R"({"b":1,"a":2,"B":3})"), R"({"B":3,"a":2,"b":1})");
    EXPECT_EQ(inOrder(R"({"a":1,"_":2,"Z":3})"), R"({"Z":3,"_":2,"a":1})");
    EXPECT_EQ(inOrder(R"({"9":1,"10":2,"1":3})"), R"({"1":3,"10":2,"9":1})");
}

TEST(JSONSerializerSorting, PutsAKeyBeforeItsContinuations) {
    EXPECT_EQ(inOrder(R"({"abc":1,"ab":2,"":3,"a":4,"ab\u0000":5})"), R"({"":3,"a":4,"ab":2,"ab\u0000":5,"abc":1})");
}

TEST(JSONSerializerSorting, OrdersByUnicodeScalarsNotByLocale) {
    EXPECT_EQ(inOrder(R"({"ñ":1,"n":2,"o":3,"É":4,"z":5})"), R"({"n":2,"o":3,"z":5,"É":4,"ñ":1})");
    // In UTF-16 the emoji would come first.
    EXPECT_EQ(inOrder(R"({"😀":1,"\uFB00":2,"\uFFFD":3})"), "{\"\uFB00\":2,\"\uFFFD\":3,\"😀\":1}");
}

TEST(JSONSerializerSorting, ComparesKeysInCanonicalComposition) {
    // A decomposed é stands where the composed one does, after z, not after e.
    EXPECT_EQ(inOrder("{\"e\u0301\":1,\"f\":2,\"z\":3,\"\u00E8\":4}"), "{\"f\":2,\"z\":3,\"\u00E8\":4,\"e\u0301\":1}");
    // The Angstrom sign is the letter Å.
    EXPECT_EQ(inOrder("{\"\u212B\":1,\"\u00C6\":2,\"\u00C4\":3}"), "{\"\u00C4\":3,\"\u212B\":1,\"\u00C6\":2}");
    EXPECT_EQ(inOrder("{\"\uAC01\":1,\"\u1100\u1161\":2}"), "{\"\u1100\u1161\":2,\"\uAC01\":1}");
}

TEST(JSONSerializerSorting, KeepsEqualKeysInDocumentOrder) {
    EXPECT_EQ(inOrder(R"({"x":1,"b":0,"x":2,"a":0,"x":3})"), R"({"a":0,"b":0,"x":1,"x":2,"x":3})");
    EXPECT_EQ(inOrder("{\"\u00E9\":1,\"e\u0301\":2,\"a\":0,\"\u00E9\":3}"),
              "{\"a\":0,\"\u00E9\":1,\"e\u0301\":2,\"\u00E9\":3}");
    EXPECT_EQ(inOrder("{\"e\u0301\":1,\"\u00E9\":2}"), "{\"e\u0301\":1,\"\u00E9\":2}");
}

TEST(JSONSerializerSorting, SortsEveryObjectAndNoArray) {
    EXPECT_EQ(inOrder(R"([{"b":{"d":1,"c":2},"a":[3,1,2,{"z":0,"y":0}]}])"),
              R"([{"a":[3,1,2,{"y":0,"z":0}],"b":{"c":2,"d":1}}])");
}

TEST(JSONSerializerSorting, WritesTheLayoutOfPretty) {
    EXPECT_EQ(written(parsed(R"({"b":[2,1],"a":{}})"), JSONStyle::pretty(Indent::tab, true)),
              "{\n\t\"a\": {},\n\t\"b\": [\n\t\t2,\n\t\t1\n\t]\n}\n");
}

TEST(JSONSerializerSorting, LeavesTheTreeInItsOrder) {
    const JSONTree tree = parsed(R"({"b":1,"a":2})");
    EXPECT_EQ(written(tree, sorted), "{\n  \"a\": 2,\n  \"b\": 1\n}\n");
    EXPECT_EQ(written(tree), R"({"b":1,"a":2})");
    EXPECT_EQ(written(tree, JSONStyle::pretty(Indent::twoSpaces, false)), "{\n  \"b\": 1,\n  \"a\": 2\n}\n");
}

TEST(JSONSerializerSorting, SortsTensOfThousandsOfMembersStably) {
    test::Random random(1);
    std::vector<std::pair<std::string, int>> members;
    members.reserve(40'000);
    for (int i = 0; i < 40'000; ++i)
        members.emplace_back("k" + std::to_string(random.below(10'000)), i);
    const auto text = [&] {
        std::string result;
        for (const auto& [key, value] : members)
            result += (result.empty() ? "{\"" : ",\"") + key + "\":" + std::to_string(value);
        return result + "}";
    };
    const std::string unsorted = text();
    std::stable_sort(members.begin(), members.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    EXPECT_EQ(inOrder(unsorted), text());
}

TEST(JSONSerializerSorting, SortsKeysWithLongCommonBeginnings) {
    const std::string stem(1'000, 'p');
    EXPECT_EQ(inOrder("{\"" + stem + "2\":0,\"" + stem + "\":0,\"" + stem + "1\":0,\"q\":0,\"é" + stem + "\":0,\"" +
                      stem + "é\":0}"),
              "{\"" + stem + "\":0,\"" + stem + "1\":0,\"" + stem + "2\":0,\"" + stem + "é\":0,\"q\":0,\"é" + stem +
                  "\":0}");
}

} // namespace
} // namespace quelm
