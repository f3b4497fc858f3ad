#include "Benchmarks/Generator/Generator.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

using namespace quelm::bench;

namespace {

constexpr char usage[] = "Usage: quelm-generate KIND SIZE [--indented] [--seed N]\n"
                         "Writes a JSON document to standard output, the same bytes for the same arguments.\n"
                         "  KIND  records, strings, escapes, nonlatin, deep, numbers or mixed\n"
                         "  SIZE  bytes, or with a suffix: 500KB, 100MB, 1GB (powers of ten)\n";

template <typename Integer>
std::optional<Integer> parseInteger(std::string_view text) {
    Integer number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::optional<std::uint64_t> parseSize(std::string_view text) {
    struct Suffix {
        std::string_view text;
        std::uint64_t factor;
    };
    for (const Suffix& suffix : {Suffix{"KB", 1'000}, Suffix{"MB", 1'000'000}, Suffix{"GB", 1'000'000'000}}) {
        if (!text.ends_with(suffix.text))
            continue;
        const auto number = parseInteger<std::uint32_t>(text.substr(0, text.size() - suffix.text.size()));
        return number ? std::optional(*number * suffix.factor) : std::nullopt;
    }
    return parseInteger<std::uint64_t>(text);
}

std::optional<DocumentRequest> parseArguments(int count, char** arguments) {
    if (count < 3)
        return std::nullopt;
    DocumentRequest request;
    const auto kind = documentKindFromName(arguments[1]);
    const auto size = parseSize(arguments[2]);
    if (!kind || !size)
        return std::nullopt;
    request.kind = *kind;
    request.size = *size;
    for (int index = 3; index < count; ++index) {
        const std::string_view argument = arguments[index];
        if (argument == "--indented") {
            request.layout = Layout::indented;
        } else if (argument == "--seed" && index + 1 < count) {
            const auto seed = parseInteger<std::uint64_t>(arguments[++index]);
            if (!seed)
                return std::nullopt;
            request.seed = *seed;
        } else {
            return std::nullopt;
        }
    }
    return request;
}

} // namespace

int main(int count, char** arguments) {
    const auto request = parseArguments(count, arguments);
    if (!request) {
        std::fputs(usage, stderr);
        return 2;
    }
    generate(*request, [](std::string_view block) {
        if (std::fwrite(block.data(), 1, block.size(), stdout) != block.size()) {
            std::perror("quelm-generate");
            std::exit(1);
        }
    });
    return std::fflush(stdout) == 0 ? 0 : 1;
}
