#pragma once

#include <string>
#include <vector>

/// Inputs to begin with.
namespace quelm::fuzzing {

/// Journals with records of every kind, whole and not, and a backup.
std::vector<std::string> journalSeeds();

/// The files of a folder, each in every style, and some that are short and strange.
std::vector<std::string> openingSeeds(const std::string& folder);

} // namespace quelm::fuzzing
