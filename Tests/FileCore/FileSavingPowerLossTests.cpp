#include "FileCore/FileBackup.h"
#include "Tests/FileCore/SaveScenario.h"
#include "Tests/FileCore/SimulatedDisk.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quelm::test {
namespace {

const std::string before(9'000, 'a');
const std::string after(5'000, 'z');
const std::string path = "/datos/a.json";
const std::string backupFolder = "/casa/estado/copias";

SaveOptions optionsFor(SystemCalls& calls) {
    SaveOptions options;
    options.backupFolder = backupFolder;
    options.calls = &calls;
    return options;
}

/// Whether a backup on the disk is whole and holds the former contents, as `findBackups` sees it in a real folder.
bool hasWholeBackup(const SimulatedDisk& disk) {
    const TemporaryFolder copies;
    for (const std::string& name : disk.names(backupFolder))
        copies.write(name, disk.contents(backupFolder + '/' + name).value_or(""));
    const auto backups = findBackups(copies.path());
    return std::ranges::any_of(backups, [](const FileBackup& backup) {
        const auto bytes = readBackup(backup);
        return backup.original == path && bytes && bytes->view() == before;
    });
}

enum class Kind { create, replace, inPlace };

void addFiles(SimulatedDisk& disk, Kind kind) {
    disk.addFolder("/datos");
    disk.addFolder("/casa");
    if (kind != Kind::create)
        disk.addFile(path, before);
    if (kind == Kind::inPlace)
        disk.addName("/datos/b.json", path);
}

class FileSavingPowerLossTests : public testing::TestWithParam<Kind> {
protected:
    bool isOld(const SimulatedDisk& disk) const {
        return disk.contents(path) == (GetParam() == Kind::create ? std::nullopt : std::optional(before));
    }
};

TEST_P(FileSavingPowerLossTests, TheFileIsTheNewOneFromTheEndOfTheSaveOn) {
    SimulatedDisk disk;
    addFiles(disk, GetParam());
    const auto saved = saveFile(path, produce(after), optionsFor(disk));
    ASSERT_TRUE(saved) << describe(saved.error());
    EXPECT_TRUE(saved->isComplete);
    EXPECT_EQ(disk.openCount(), 0);
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        const SimulatedDisk left(disk.afterPowerLoss(seed));
        ASSERT_EQ(left.contents(path), after) << seed;
    }
}

TEST_P(FileSavingPowerLossTests, AtEveryCallItIsTheOldOrTheNewOneOrHasABackup) {
    SimulatedDisk whole;
    addFiles(whole, GetParam());
    FaultySystemCalls counted(whole);
    ASSERT_TRUE(saveFile(path, produce(after), optionsFor(counted)));
    int torn = 0;
    for (int number = 0; number < counted.count(); ++number) {
        SimulatedDisk disk;
        addFiles(disk, GetParam());
        // Nothing reaches the device from that call on.
        FaultySystemCalls calls(Fault::failing(EIO).from(number), disk);
        (void)saveFile(path, produce(after), optionsFor(calls));
        for (std::uint32_t seed = 0; seed < 50; ++seed) {
            const SimulatedDisk left(disk.afterPowerLoss(seed));
            if (isOld(left) || left.contents(path) == after)
                continue;
            ++torn;
            ASSERT_EQ(GetParam(), Kind::inPlace) << "call " << number << ", seed " << seed << '\n' << calls.log();
            ASSERT_TRUE(hasWholeBackup(left)) << "call " << number << ", seed " << seed << '\n' << calls.log();
        }
    }
    EXPECT_EQ(torn > 0, GetParam() == Kind::inPlace);
}

INSTANTIATE_TEST_SUITE_P(Kinds, FileSavingPowerLossTests, testing::Values(Kind::create, Kind::replace, Kind::inPlace));

} // namespace
} // namespace quelm::test
