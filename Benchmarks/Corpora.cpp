#include "Benchmarks/Corpora.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <system_error>

namespace quelm::bench {

namespace {

namespace fs = std::filesystem;

struct Usual {
    DocumentKind kind;
    std::uint32_t megabytes;
    Layout layout = Layout::compact;
};

/// Deep nesting is small because it grows a hundredfold when it is indented.
constexpr std::array usualDocuments = std::to_array<Usual>({{DocumentKind::records, 1},
                                                            {DocumentKind::records, 4},
                                                            {DocumentKind::records, 100},
                                                            {DocumentKind::records, 4, Layout::indented},
                                                            {DocumentKind::strings, 4},
                                                            {DocumentKind::escapes, 4},
                                                            {DocumentKind::nonlatin, 4},
                                                            {DocumentKind::numbers, 4},
                                                            {DocumentKind::mixed, 4},
                                                            {DocumentKind::deep, 1}});

std::string sizeText(std::uintmax_t bytes) {
    if (bytes < 1000)
        return std::to_string(bytes) + "B";
    const bool isSmall = bytes < 100'000;
    const double size = static_cast<double>(bytes) / (isSmall ? 1e3 : 1e6);
    char text[32];
    std::snprintf(text, sizeof text, size < 10 ? "%.1f%s" : "%.0f%s", size, isSmall ? "KB" : "MB");
    return text;
}

/// Writes beside the file and renames, so that an interrupted run leaves no half document.
bool writeDocument(const DocumentRequest& request, const fs::path& file) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    const fs::path unfinished = fs::path(file).concat(".unfinished");
    {
        std::ofstream stream(unfinished, std::ios::binary);
        generate(request, [&](std::string_view block) {
            stream.write(block.data(), static_cast<std::streamsize>(block.size()));
        });
        stream.flush();
        if (!stream)
            return false;
    }
    fs::rename(unfinished, file, error);
    return !error;
}

std::vector<fs::path> jsonFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".json")
            files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

} // namespace

Corpus::Corpus(const fs::path& file) : file_(file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    name_ = file.stem().string() + "-" + sizeText(error ? 0 : size);
}

Corpus::Corpus(DocumentKind kind, std::uint32_t megabytes, Layout layout, const fs::path& folder)
    : name_(bench::name(kind)), request_(DocumentRequest{kind, megabytes * std::uint64_t{1'000'000}, layout}) {
    if (layout == Layout::indented)
        name_ += "-indented";
    name_ += "-" + std::to_string(megabytes) + "MB";
    file_ = folder / ("v" + std::to_string(generatorVersion)) / (name_ + ".json");
}

std::expected<SharedText, std::string> Corpus::load() const {
    std::error_code error;
    if (request_ && !fs::exists(file_, error) && !writeDocument(*request_, file_))
        return std::unexpected("could not write " + file_.string());
    const std::uintmax_t size = fs::file_size(file_, error);
    std::ifstream stream(file_, std::ios::binary);
    if (error || !stream)
        return std::unexpected("could not open " + file_.string());
    TextBuilder builder(size);
    stream.read(builder.room(size), static_cast<std::streamsize>(size));
    if (static_cast<std::uintmax_t>(stream.gcount()) != size)
        return std::unexpected("could not read " + file_.string());
    builder.advance(size);
    return builder.finish();
}

std::vector<Corpus> corpora(const Options& options) {
    std::vector<Corpus> all;
    all.reserve(usualDocuments.size() + options.recordSizes.size() + options.corpora.size());
    for (const Usual& usual : usualDocuments)
        all.emplace_back(usual.kind, usual.megabytes, usual.layout, options.cacheFolder);
    for (const std::uint32_t megabytes : options.recordSizes)
        all.emplace_back(DocumentKind::records, megabytes, Layout::compact, options.cacheFolder);
    if (!options.sharedFolder.empty())
        for (const fs::path& file : jsonFiles(options.sharedFolder))
            all.emplace_back(file);
    for (const fs::path& file : options.corpora)
        all.emplace_back(file);
    std::erase_if(all, [&](const Corpus& corpus) { return !corpus.name().contains(options.only); });
    return all;
}

} // namespace quelm::bench
