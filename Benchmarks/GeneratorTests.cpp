#include "Benchmarks/Generator/Generator.h"
#include "Benchmarks/Peers/Peers.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm::bench {

namespace {

std::string generated(const DocumentRequest& request) {
    std::string text;
    generate(request, [&](std::string_view block) { text += block; });
    return text;
}

/// FNV-1a.
std::uint64_t fingerprint(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char byte : text)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
    return hash;
}

bool isAccepted(JSONLibrary& library, const std::string& text) {
    const std::string padded = text + std::string(JSONLibrary::padding, '\0');
    const bool isParsed = library.parse(std::string_view(padded).substr(0, text.size()));
    library.discardDocument();
    return isParsed;
}

class EveryKind : public testing::TestWithParam<DocumentKind> {};

std::string kindName(const testing::TestParamInfo<DocumentKind>& info) {
    return std::string(name(info.param));
}

INSTANTIATE_TEST_SUITE_P(Generator, EveryKind, testing::ValuesIn(allDocumentKinds), kindName);

TEST_P(EveryKind, IsJSONInUTF8InBothLayouts) {
    for (const Layout layout : {Layout::compact, Layout::indented}) {
        const std::string text = generated({GetParam(), 300'000, layout});
        EXPECT_TRUE(peers::simdjsonValidatesUTF8(text));
        EXPECT_TRUE(isAccepted(*peers::simdjsonDOM(), text));
        EXPECT_TRUE(isAccepted(*peers::rapidJSON(), text));
    }
}

TEST_P(EveryKind, ReachesTheSizeWithinThreePercent) {
    for (const Layout layout : {Layout::compact, Layout::indented})
        for (const std::uint64_t size : {400'000u, 3'000'000u}) {
            const std::size_t reached = generated({GetParam(), size, layout}).size();
            EXPECT_GE(reached, size);
            EXPECT_LE(reached, size + size * 3 / 100);
        }
}

TEST_P(EveryKind, ChangesWithTheSeed) {
    EXPECT_NE(generated({GetParam(), 10'000, Layout::compact, 1}), generated({GetParam(), 10'000, Layout::compact, 2}));
}

TEST_P(EveryKind, HasOneLineWhenCompactAndManyWhenIndented) {
    EXPECT_FALSE(generated({GetParam(), 10'000, Layout::compact}).contains('\n'));
    const std::string indented = generated({GetParam(), 10'000, Layout::indented});
    EXPECT_TRUE(indented.contains("\n  "));
    EXPECT_TRUE(indented.ends_with('\n'));
}

TEST_P(EveryKind, IsFoundByItsName) {
    EXPECT_EQ(documentKindFromName(name(GetParam())), GetParam());
}

TEST(Generator, GivesTheSameBytesOnEveryMachine) {
    EXPECT_EQ(fingerprint(generated({DocumentKind::records, 200'000})), 7610061712678892311u);
    EXPECT_EQ(fingerprint(generated({DocumentKind::mixed, 500'000, Layout::indented, 7})), 16166722837614057893u);
    EXPECT_EQ(fingerprint(generated({DocumentKind::deep, 200'000})), 3180267146462524131u);
}

TEST(Generator, WritesRecordsOfAboutTwentyFiveBytesAValue) {
    const std::string text = generated({DocumentKind::records, 1'000'000});
    // A first child follows an opening bracket, any other one a comma. Empty containers count one too many.
    std::size_t values = 0;
    bool isString = false;
    for (const char byte : text) {
        isString ^= byte == '"';
        values += !isString && (byte == ',' || byte == '[' || byte == '{');
    }
    const double bytesPerValue = static_cast<double>(text.size()) / static_cast<double>(values);
    EXPECT_GT(bytesPerValue, 22);
    EXPECT_LT(bytesPerValue, 28);
}

TEST(Generator, KnowsNoOtherNames) {
    EXPECT_FALSE(documentKindFromName("record"));
}

} // namespace

} // namespace quelm::bench
