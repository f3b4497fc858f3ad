#pragma once

#include "FileCore/JournalContents.h"
#include "FileCore/JournalFile.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Journals as their tests need them.
namespace quelm::test::journals {

/// Payloads that differ from each other: an empty one, short ones, zeros, ones that are longer than a sector, and one
/// that is too long to be copied.
std::vector<std::string> payloads();

/// The bytes of a journal of these records.
std::string bytesOf(const std::vector<std::string>& records);

std::vector<std::string> recordsOf(const JournalContents& contents);
std::vector<std::string> recordsIn(std::string_view bytes);

bool isPrefix(const std::vector<std::string>& begin, const std::vector<std::string>& whole);

/// What a file on the disk holds that is there.
std::string fileBytes(const std::string& path);

/// What happened while records were appended, until something failed.
struct Progress {
    /// How many appends have returned, and how many of those had before the last synchronization that has.
    std::size_t appended = 0;
    std::size_t synchronized = 0;
    bool isCreated = false;
};

/// Creates a journal, appends the records and synchronizes after every third of them and the last; ends at the first
/// failure. Tells `progress` of everything as it happens.
void writeJournal(const std::string& path, const std::vector<std::string>& records, SystemCalls& calls,
                  Progress& progress);

} // namespace quelm::test::journals
