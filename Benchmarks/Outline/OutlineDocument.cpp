#include "Benchmarks/Outline/OutlineDocument.h"

#include "Benchmarks/Generator/Digits.h"
#include "Benchmarks/Generator/Items.h"
#include "Benchmarks/Generator/JSONEmitter.h"
#include "Benchmarks/Generator/Random.h"
#include "JSONCore/JSONParser.h"
#include "TextCore/Check.h"
#include "TextCore/SharedText.h"

#include <cstdlib>
#include <string>

namespace quelm::bench {

namespace {

/// What a record comes to on average; the document need not be exact.
constexpr std::int64_t nodesPerRecord = 29;
constexpr std::int64_t recordsPerList =
    (OutlineDocument::nodes - 2 * OutlineDocument::largeContainerSize) / 2 / nodesPerRecord;

void writeRecords(JSONEmitter& out, Random& random) {
    out.beginArray();
    for (std::int64_t number = 0; number < recordsPerList; ++number)
        items::record(out, static_cast<std::uint64_t>(number), random);
    out.end();
}

void writeScalar(JSONEmitter& out, std::int64_t number, Random& random) {
    std::string text;
    switch (number % OutlineDocument::booleanEvery) {
    case 0:
        return out.literal(random.chance(50) ? "true" : "false");
    case 1:
    case 3:
        appendDecimal(text, random.below(1'000'000));
        return out.literal(text);
    case 2:
        text = "text ";
        appendDecimal(text, random.below(1'000'000));
        return out.string(text);
    default:
        return out.literal("null");
    }
}

void writeLargeArray(JSONEmitter& out, Random& random) {
    out.beginArray();
    for (std::int64_t number = 0; number < OutlineDocument::largeContainerSize; ++number)
        writeScalar(out, number, random);
    out.end();
}

void writeLargeObject(JSONEmitter& out, Random& random) {
    std::string key;
    out.beginObject();
    for (std::int64_t number = 0; number < OutlineDocument::largeContainerSize; ++number) {
        key = "member ";
        appendDecimal(key, number);
        out.key(key);
        writeScalar(out, number, random);
    }
    out.end();
}

SharedText documentText() {
    TextBuilder text;
    JSONEmitter out(Layout::compact, [&](std::string_view block) { text.append(block); });
    Random random(1);
    out.beginObject();
    out.key("before");
    writeRecords(out, random);
    out.key("array");
    writeLargeArray(out, random);
    out.key("object");
    writeLargeObject(out, random);
    out.key("after");
    writeRecords(out, random);
    out.end();
    out.finish();
    return text.finish();
}

} // namespace

OutlineDocument makeOutlineDocument() {
    auto tree = JSONParser::parse(TextRope(documentText()));
    require(tree.has_value(), "the generated document is JSON");
    constexpr std::int64_t tolerance = OutlineDocument::nodes / 50;
    require(std::abs(tree->nodeCount() - OutlineDocument::nodes) < tolerance,
            "the document has about five million nodes");
    const ChildList members = tree->children(tree->root());
    const NodeID largeArray = members[1];
    const NodeID largeObject = members[2];
    return {std::move(*tree), largeArray, largeObject};
}

} // namespace quelm::bench
