#pragma once

#include "Benchmarks/Generator/Generator.h"
#include "Benchmarks/Options.h"
#include "TextCore/SharedText.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quelm::bench {

/// A document to measure on: a file, made when it is first loaded if it is a generated one.
class Corpus {
public:
    /// A file of the user's. Named after it and its size, as in "twitter-0.6MB".
    explicit Corpus(const std::filesystem::path& file);

    /// A generated document of so many megabytes, kept in `folder`. Named as in "records-100MB".
    Corpus(DocumentKind kind, std::uint32_t megabytes, Layout layout, const std::filesystem::path& folder);

    const std::string& name() const { return name_; }

    /// The text, padded, or why it cannot be had. Each call reads it anew, so that nobody holds what is not
    /// measured.
    std::expected<SharedText, std::string> load() const;

private:
    std::string name_;
    std::filesystem::path file_;
    std::optional<DocumentRequest> request_;
};

/// The documents that the options ask for: the usual generated ones, the files of the shared folder, and what
/// was named besides.
std::vector<Corpus> corpora(const Options& options);

} // namespace quelm::bench
