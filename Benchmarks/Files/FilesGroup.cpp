#include "Benchmarks/Corpora.h"
#include "Benchmarks/Files/FilesBenchmarks.h"
#include "Benchmarks/Groups.h"
#include "Benchmarks/OffscreenApplication.h"
#include "TextCore/Check.h"

namespace quelm::bench {

SharedText records(const Options& options, std::uint32_t megabytes) {
    auto text = Corpus(DocumentKind::records, megabytes, Layout::compact, options.cacheFolder).load();
    require(text.has_value(), "the generated document can be read");
    return *std::move(text);
}

bool runFilesGroup(const Options& options) {
    const OffscreenApplication application;
    measureWholeFiles(options);
    measureJournal(options);
    measureRecovery(options);
    return true;
}

} // namespace quelm::bench
