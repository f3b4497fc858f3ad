#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quelm::bench {

/// What the command line asks for.
struct Options {
    /// In the order given; empty for all.
    std::vector<std::string> groups;
    /// Files to measure on besides the usual ones.
    std::vector<std::filesystem::path> corpora;
    /// Sizes of further documents of records, in megabytes.
    std::vector<std::uint32_t> recordSizes;
    /// Only documents whose name contains this are measured.
    std::string only;
    /// Whether the slow peers read large documents too.
    bool allPeers = false;
    /// Whether memory that one run has freed serves the next.
    bool warm = false;
    /// Where generated documents are kept.
    std::filesystem::path cacheFolder = "build/corpora";
    /// Where further files to measure on lie; need not exist.
    std::filesystem::path sharedFolder;

    /// The options that arguments (without the program's name) mean, or what is wrong with them. `groups` are
    /// the names that a plain argument may have.
    static std::expected<Options, std::string> parse(std::span<const std::string_view> arguments,
                                                     std::span<const std::string_view> groups);
};

} // namespace quelm::bench
