// The parser on every instruction set that it is compiled for and this processor has.

#include "JSONCore/JSONParser.h"

#include <hwy/highway.h>
#include <hwy/targets.h>

#include <cstdint>
#include <expected>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quelm {
namespace {

/// Texts whose quotation marks, escapes, digits, blanks and faults fall on every place of a vector.
std::vector<std::string> texts() {
    std::vector<std::string> all;
    for (std::size_t shift = 0; shift < 70; ++shift) {
        const std::string blanks(shift, ' ');
        const std::string letters(shift, 'x');
        const std::string digits(shift, '7');
        all.push_back(blanks + "[1, \"" + letters + "\\n\\u00e1" + letters + "\", -" + digits + "1.5e" + digits + "3]");
        all.push_back("{\"" + letters + "\":" + blanks + "null,\n\t\"b\":[true,false]" + blanks + "}");
        all.push_back("[\"" + letters + "\x01\"]");
        all.push_back("[\"" + letters + "\\q\"]");
        all.push_back("[\"" + letters);
        all.push_back(blanks + digits + "1x");
        all.push_back("[" + blanks + digits + "1.]");
        all.push_back("[\"ñ" + letters + "日本\"," + blanks + "}");
    }
    return all;
}

TEST(JSONParserTargets, EveryInstructionSetGivesTheSameTreesAndErrors) {
    std::vector<std::expected<JSONTree, JSONParseError>> expected;
    const std::vector<std::string> samples = texts();
    for (const std::string& text : samples)
        expected.push_back(JSONParser::parse(TextRope(SharedText(text))));

    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const auto found = JSONParser::parse(TextRope(SharedText(samples[i])));
            ASSERT_EQ(found.has_value(), expected[i].has_value()) << hwy::TargetName(target) << ": " << samples[i];
            if (found)
                ASSERT_TRUE(*found == *expected[i]) << hwy::TargetName(target) << ": " << samples[i];
            else
                ASSERT_EQ(found.error(), expected[i].error()) << hwy::TargetName(target) << ": " << samples[i];
        }
    }
    hwy::SetSupportedTargetsForTest(0);
}

} // namespace
} // namespace quelm
