#pragma once

#include "FileCore/FileSaving.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace quelm::test {

/// Gives the bytes in pieces.
ProducePieces produce(std::string bytes);

/// In words, for messages of tests.
std::string describe(const SaveFailure& failure);

/// A way in which a file is saved, told apart by how it must be done. Everything happens in the folder "files"; backups
/// go to the folder "backups".
struct SaveScenario {
    std::string name;
    /// Makes what is there before, with that content of the file.
    std::function<void(const TemporaryFolder&, std::string_view before)> prepare;
    /// Below "files".
    std::string savedPath = "a.json";
    /// Where the content is found: a name below "files" other than the saved one for links.
    std::string contentPath = "a.json";
    bool hasOld = true;
    bool isInPlace = false;
    /// Names in the folder "files" afterwards.
    std::vector<std::string> names{"a.json"};
    /// What makes the scenario; comes before other faults.
    std::optional<Fault> condition = {};

    static const std::vector<SaveScenario>& all();

    friend std::ostream& operator<<(std::ostream& stream, const SaveScenario& scenario) {
        return stream << scenario.name;
    }
};

/// One scenario set up in a folder of its own.
class SaveTrial {
public:
    SaveTrial(const SaveScenario& scenario, std::string before, std::string after);

    /// Saves the new content, with these calls.
    std::expected<SavedFile, SaveFailure> save(SystemCalls& calls) const;
    /// The number of calls that a save without faults makes.
    static int countCalls(const SaveScenario& scenario, const std::string& before, const std::string& after);

    /// The content; absent without the file.
    std::optional<std::string> content() const;
    bool isOld() const;
    bool isNew() const { return content() == after_; }
    std::vector<std::string> names() const;
    std::vector<std::string> backupNames() const;
    std::string backupFolder() const { return folder_.path("backups"); }

    /// Looks for a backup as the next start does, and whether it holds the old content.
    bool hasWholeBackup() const;

private:
    const SaveScenario& scenario_;
    std::string before_;
    std::string after_;
    TemporaryFolder folder_;
};

} // namespace quelm::test
