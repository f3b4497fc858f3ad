#pragma once

#include "Benchmarks/Options.h"
#include "TextCore/SharedText.h"

#include <string>
#include <string_view>

/// Each measures one side of keeping documents safe and prints its lines.
namespace quelm::bench {

/// As in "files/save/records-100MB".
inline std::string filesLabel(std::string_view measurement, std::string_view document) {
    return "files/" + std::string(measurement) + "/" + std::string(document);
}

/// A generated document of records, compact, of so many megabytes.
SharedText records(const Options& options, std::uint32_t megabytes);

/// Reading and saving a whole file, beside Qt's QFile and QSaveFile.
void measureWholeFiles(const Options& options);

/// What edits of a large document write into its journal, and how long they hold up who edits.
void measureJournal(const Options& options);

/// Repeating unsaved changes on a large file.
void measureRecovery(const Options& options);

} // namespace quelm::bench
