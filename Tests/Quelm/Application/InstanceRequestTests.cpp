#include "Quelm/Application/InstanceRequest.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>

namespace quelm {
namespace {

std::optional<InstanceRequest> decoded(std::string_view bytes) {
    const auto length = InstanceRequest::bodyLength(bytes.substr(0, InstanceRequest::headerLength));
    if (!length || bytes.size() != InstanceRequest::headerLength + *length)
        return std::nullopt;
    return InstanceRequest::fromBody(bytes.substr(InstanceRequest::headerLength));
}

TEST(InstanceRequestTests, WhatIsSentIsWhatArrives) {
    for (const InstanceRequest& request :
         {InstanceRequest{}, InstanceRequest{{"/a.json"}}, InstanceRequest{{"/a b\n.json", "/ñandú/日本.json", "/"}}}) {
        const auto bytes = request.encoded();
        ASSERT_TRUE(bytes);
        EXPECT_EQ(decoded(*bytes), request);
    }
}

TEST(InstanceRequestTests, WhatIsNoAbsolutePathInUTF8IsNotSent) {
    const std::string zero("/a\0b", 4);
    for (const std::string& path :
         {std::string(), std::string("a.json"), zero, std::string("/\xff"), std::string("/") + std::string(4096, 'a')})
        EXPECT_FALSE(InstanceRequest{{path}}.encoded()) << path;
    EXPECT_FALSE((InstanceRequest{std::vector<std::string>(300, "/" + std::string(4000, 'a'))}.encoded()));
}

TEST(InstanceRequestTests, AHeaderOfAnotherVersionOrOfTooMuchIsRefused) {
    std::string bytes = *InstanceRequest{{"/a"}}.encoded();
    ASSERT_EQ(InstanceRequest::bodyLength(bytes.substr(0, InstanceRequest::headerLength)), 3u);
    EXPECT_FALSE(InstanceRequest::bodyLength(bytes.substr(0, InstanceRequest::headerLength - 1)));
    std::string other = bytes;
    other[7] = '\x02';
    EXPECT_FALSE(InstanceRequest::bodyLength(other.substr(0, InstanceRequest::headerLength)));
    std::string large = bytes;
    large[11] = '\x7f';
    EXPECT_FALSE(InstanceRequest::bodyLength(large.substr(0, InstanceRequest::headerLength)));
}

TEST(InstanceRequestTests, ABodyIsPathsAndNothingElse) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(InstanceRequest::fromBody(""sv));
    EXPECT_TRUE(InstanceRequest::fromBody("/a\0"sv));
    for (const std::string_view body : {"/a"sv, "\0"sv, "a\0"sv, "/a\0\0"sv, "/a\0/b"sv, "/\xc3\0"sv})
        EXPECT_FALSE(InstanceRequest::fromBody(body)) << body;
}

TEST(InstanceRequestTests, NoBytesHarmIt) {
    std::mt19937 random(7);
    const std::string valid = *InstanceRequest{{"/a.json", "/b/ñ.json"}}.encoded();
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes = valid;
        for (int change = 0; change < 3; ++change)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        bytes.resize(random() % (bytes.size() + 1));
        // What is understood at all is what would be sent for it.
        if (const auto request = decoded(bytes)) {
            EXPECT_EQ(request->encoded(), bytes);
        }
    }
}

} // namespace
} // namespace quelm
