#include "Tests/FileCore/SaveScenario.h"

#include "FileCore/FileBackup.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quelm::test {

namespace {

constexpr std::size_t pieceSize = 65'536;

void writeOld(const TemporaryFolder& folder, std::string_view before) {
    folder.write("files/a.json", before);
}

void link(const TemporaryFolder& folder, const char* target, std::string_view name) {
    ASSERT_EQ(::symlink(target, folder.path("files/" + std::string(name)).c_str()), 0);
}

std::vector<SaveScenario> makeAll() {
    SaveScenario create{.name = "a new file", .prepare = [](const TemporaryFolder&, std::string_view) {}};
    create.hasOld = false;

    SaveScenario dangling{
        .name = "a link to a file that is to be made",
        .prepare = [](const TemporaryFolder& folder, std::string_view) { link(folder, "a.json", "link"); }};
    dangling.savedPath = "link";
    dangling.hasOld = false;
    dangling.names = {"a.json", "link"};

    const SaveScenario replace{.name = "a file to be replaced", .prepare = writeOld};

    SaveScenario chain{.name = "a link to a link to a file",
                       .prepare = [](const TemporaryFolder& folder, std::string_view before) {
                           writeOld(folder, before);
                           link(folder, "a.json", "first");
                           link(folder, folder.path("files/first").c_str(), "second");
                       }};
    chain.savedPath = "second";
    chain.names = {"a.json", "first", "second"};

    SaveScenario hardLinks{
        .name = "a file with another hard link", .prepare = [](const TemporaryFolder& folder, std::string_view before) {
            writeOld(folder, before);
            std::filesystem::create_hard_link(folder.path("files/a.json"), folder.path("files/b.json"));
        }};
    hardLinks.contentPath = "b.json";
    hardLinks.isInPlace = true;
    hardLinks.names = {"a.json", "b.json"};

    SaveScenario readOnlyFolder{.name = "a folder that refuses new files", .prepare = writeOld};
    readOnlyFolder.isInPlace = true;
    readOnlyFolder.condition = Fault::failing(EACCES).at("open", 0);

    SaveScenario stickyFolder{.name = "a folder that refuses the replacement", .prepare = writeOld};
    stickyFolder.isInPlace = true;
    stickyFolder.condition = Fault::failing(EPERM).at("rename", 0);

    return {create, dangling, replace, chain, hardLinks, readOnlyFolder, stickyFolder};
}

} // namespace

ProducePieces produce(std::string bytes) {
    return [bytes = std::move(bytes)](const TakePiece& take) {
        for (std::size_t position = 0; position < bytes.size(); position += pieceSize) {
            if (!take(std::string_view(bytes).substr(position, pieceSize)))
                return false;
        }
        return true;
    };
}

std::string describe(const SaveFailure& failure) {
    return "step " + std::to_string(static_cast<int>(failure.step)) + ", reason " +
           std::to_string(static_cast<int>(failure.reason)) + ", " + failure.error.description() +
           (failure.backup.empty() ? "" : ", backup " + failure.backup);
}

const std::vector<SaveScenario>& SaveScenario::all() {
    static const std::vector<SaveScenario> scenarios = makeAll();
    return scenarios;
}

SaveTrial::SaveTrial(const SaveScenario& scenario, std::string before, std::string after)
    : scenario_(scenario), before_(std::move(before)), after_(std::move(after)) {
    std::filesystem::create_directory(folder_.path("files"));
    scenario.prepare(folder_, before_);
}

std::expected<SavedFile, SaveFailure> SaveTrial::save(SystemCalls& calls) const {
    SaveOptions options;
    options.backupFolder = backupFolder();
    options.calls = &calls;
    return saveFile(folder_.path("files/" + scenario_.savedPath), produce(after_), options);
}

int SaveTrial::countCalls(const SaveScenario& scenario, const std::string& before, const std::string& after) {
    const SaveTrial trial(scenario, before, after);
    FaultySystemCalls calls;
    if (scenario.condition)
        calls.add(*scenario.condition);
    const auto saved = trial.save(calls);
    EXPECT_TRUE(saved) << scenario.name << ": " << describe(saved.error()) << '\n' << calls.log();
    EXPECT_TRUE(trial.isNew()) << scenario.name;
    EXPECT_EQ(trial.names(), scenario.names) << scenario.name;
    EXPECT_TRUE(trial.backupNames().empty()) << scenario.name;
    return calls.count();
}

std::optional<std::string> SaveTrial::content() const {
    const std::string path = folder_.path("files/" + scenario_.contentPath);
    if (!std::filesystem::exists(path))
        return std::nullopt;
    return folder_.read("files/" + scenario_.contentPath);
}

bool SaveTrial::isOld() const {
    return content() == (scenario_.hasOld ? std::optional(before_) : std::nullopt);
}

std::vector<std::string> SaveTrial::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path("files")))
        names.emplace_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

std::vector<std::string> SaveTrial::backupNames() const {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(backupFolder(), ignored))
        names.emplace_back(entry.path().filename());
    return names;
}

bool SaveTrial::hasWholeBackup() const {
    const std::vector<FileBackup> backups = findBackups(backupFolder());
    if (backups.size() != 1 || backups.front().original != folder_.path("files/a.json"))
        return false;
    const auto bytes = readBackup(backups.front());
    return bytes && bytes->view() == before_;
}

} // namespace quelm::test
