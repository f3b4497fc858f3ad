#include "FileCore/BackupFormat.h"
#include "FileCore/JournalFile.h"
#include "Quelm/Documents/FileComparison.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "Tests/Quelm/Recovery/ReplayedJournalTest.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <utility>

namespace quelm {
namespace {

using State = LeftBehind::State;

/// Journals, backups and files as processes leave them.
class LeftBehindTests : public ReplayedJournalTest {
protected:
    LeftBehindTests() { QDir(home.path()).mkdir(QStringLiteral("recovery")); }

    QString folder() const { return home.filePath(QStringLiteral("recovery")); }
    QString file() const { return home.filePath(QStringLiteral("datos.json")); }
    std::string filePath() const { return file().toStdString(); }

    static void write(const QString& path, std::string_view bytes) {
        QFile written(path);
        ASSERT_TRUE(written.open(QIODevice::WriteOnly | QIODevice::Truncate));
        written.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    static std::string read(const QString& path) {
        QFile opened(path);
        EXPECT_TRUE(opened.open(QIODevice::ReadOnly));
        return opened.readAll().toStdString();
    }
    QStringList names() const { return QDir(folder()).entryList(QDir::Files, QDir::Name); }

    journal::Base baseOf(std::string_view bytes, EditorMode mode = EditorMode::text) const {
        journal::Base made = base(mode, bytes);
        made.path = filePath();
        return made;
    }
    static journal::Base newDocument() {
        return {.path = {}, .checksum = {}, .mode = EditorMode::text, .style = pretty};
    }

    JournalFile open(const char* name, std::initializer_list<journal::Record> records) const {
        auto made = JournalFile::create(QDir(folder()).filePath(QString::fromUtf8(name)).toStdString());
        EXPECT_TRUE(made);
        for (const journal::Record& record : records)
            EXPECT_TRUE(made->append(journal::encode(record)));
        return *std::move(made);
    }
    /// A journal whose process has ended.
    void leave(std::initializer_list<journal::Record> records, const char* name = "a.journal") const {
        open(name, records);
    }
    /// A backup as a process leaves it that was killed while it wrote the file in place.
    void leaveBackup(std::string_view before, std::string_view after) const {
        const std::string head = backupFormat::head(filePath(), static_cast<std::int64_t>(before.size()));
        const std::string tail =
            backupFormat::tail(head, {.before = ContentChecksum::of(before), .after = ContentChecksum::of(after)});
        write(folder() + QStringLiteral("/b.backup"), head + std::string(before) + tail);
    }

    std::vector<LeftBehind> find() const { return findLeftBehind(folder()); }
    LeftBehind findOne() const {
        std::vector<LeftBehind> found = find();
        EXPECT_EQ(found.size(), 1U);
        return found.empty() ? LeftBehind() : std::move(found.front());
    }
    static std::string bytesOf(const RecoveredDocument& document) {
        return std::string(JSONDocument::fileContents(document.content).view());
    }
    /// The document that comes back with those bytes.
    RecoveredDocument recoverOne(std::string_view bytes) const {
        LeftBehind left = findOne();
        EXPECT_EQ(left.state, State::recoverable);
        auto recovered = recover(std::move(left));
        EXPECT_TRUE(recovered) << (recovered ? "" : recovered.error().message.toStdString());
        if (!recovered)
            return {};
        EXPECT_EQ(bytesOf(*recovered), bytes);
        return *std::move(recovered);
    }

    TemporaryPreferences preferences;
    QTemporaryDir home;
};

// What is there.

TEST_F(LeftBehindTests, ThereIsNothingInAFolderThatIsNotThere) {
    EXPECT_TRUE(findLeftBehind(home.filePath(QStringLiteral("nada"))).empty());
    EXPECT_FALSE(QDir(home.filePath(QStringLiteral("nada"))).exists());
}

TEST_F(LeftBehindTests, ChangesOfAFileComeBack) {
    write(file(), "[1]");
    leave({baseOf("[1]"), edit(1, 1, "22")});
    const LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::recoverable);
    EXPECT_EQ(left.path, file());
    EXPECT_EQ(left.name, QStringLiteral("datos.json"));
    EXPECT_TRUE(left.time.isValid());
}

TEST_F(LeftBehindTests, TheDocumentKnowsItsFileAndLeavesItAsItIs) {
    write(file(), "[1]");
    leave({baseOf("[1]"), edit(1, 1, "22")});
    const RecoveredDocument document = recoverOne("[22]");
    EXPECT_EQ(document.mode, EditorMode::text);
    EXPECT_EQ(document.path, file());
    ASSERT_TRUE(document.state);
    EXPECT_EQ(document.state->checksum, ContentChecksum::of("[1]"));
    EXPECT_EQ(document.state->stamp, *FileStamp::of(filePath()));
    EXPECT_FALSE(document.isPartial);
    EXPECT_EQ(read(file()), "[1]");
}

TEST_F(LeftBehindTests, ADocumentWithoutAFileComesBack) {
    leave({newDocument(), edit(0, 3, "[]")});
    const LeftBehind left = findOne();
    EXPECT_FALSE(left.path);
    EXPECT_EQ(left.name, QStringLiteral("Sin título"));
}

TEST_F(LeftBehindTests, ADocumentWithoutAFileHasNone) {
    leave({newDocument(), edit(0, 3, "[]")});
    const RecoveredDocument document = recoverOne("[]");
    EXPECT_FALSE(document.path);
    EXPECT_FALSE(document.state);
}

TEST_F(LeftBehindTests, ATreeComesBackAsATree) {
    write(file(), R"({"a":1})");
    leave({baseOf(R"({"a":1})", EditorMode::tree), tree({journal::SetKey{{0, 0}, text("b")}})});
    EXPECT_EQ(recoverOne("{\n  \"b\": 1\n}\n").mode, EditorMode::tree);
}

TEST_F(LeftBehindTests, TheJournalIsGoneOnWithAndChangesComeBackAgain) {
    write(file(), "[1]");
    leave({baseOf("[1]"), journal::Replace{.numberBefore = 3, .number = 4, .hasText = true, .text = {literal("[2]")}},
           edit(1, 1, "22")});
    {
        RecoveredDocument document = recoverOne("[22]");
        EXPECT_EQ(document.numbers.nextContent, 5);
        ASSERT_TRUE(document.journal);
        ASSERT_TRUE(document.journal->append(journal::encode(edit(1, 2, "333"))));
        // It belongs to this process now.
        EXPECT_TRUE(find().empty());
    }
    recoverOne("[333]");
}

TEST_F(LeftBehindTests, NumbersAreAboveAllThatTheJournalNames) {
    write(file(), "[1,2]");
    leave({baseOf("[1,2]", EditorMode::tree), tree({journal::Remove{{0, 0}, 41}}), journal::Reformat{8, 9, pretty}});
    EXPECT_EQ(recoverOne("[\n  2\n]\n").numbers, (JournalNumbers{.nextContent = 10, .nextDetached = 42}));
}

TEST_F(LeftBehindTests, AJournalOfALivingProcessIsNotFound) {
    const JournalFile living = open("a.journal", {newDocument(), edit(0, 3, "[]")});
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal")});
}

TEST_F(LeftBehindTests, WhatIsFoundIsNotFoundByAnother) {
    leave({newDocument(), edit(0, 3, "[]")});
    const LeftBehind first = findOne();
    EXPECT_TRUE(find().empty());
}

TEST_F(LeftBehindTests, OlderChangesComeFirst) {
    leave({newDocument(), edit(0, 3, "[1]")}, "b.journal");
    leave({newDocument(), edit(0, 3, "[2]")}, "a.journal");
    QFile older(folder() + QStringLiteral("/b.journal"));
    ASSERT_TRUE(older.open(QIODevice::ReadWrite));
    ASSERT_TRUE(older.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
    older.close();
    std::vector<LeftBehind> found = find();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(bytesOf(*recover(std::move(found[0]))), "[1]");
    EXPECT_EQ(bytesOf(*recover(std::move(found[1]))), "[2]");
}

TEST_F(LeftBehindTests, OtherFilesAreLeftAlone) {
    write(folder() + QStringLiteral("/notas.txt"), "x");
    write(folder() + QStringLiteral("/a.journal.apartado"), "x");
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(names().size(), 2);
}

// Nothing to recover.

TEST_F(LeftBehindTests, AJournalWithoutUnsavedChangesGoes) {
    write(file(), "[1]");
    leave({baseOf("[1]")});
    leave({baseOf("[1]"), edit(1, 1, "2"), edit(1, 1, "1"), journal::Modified{false}}, "b.journal");
    leave({baseOf("[1]"), journal::ChangeMode{EditorMode::tree}}, "c.journal");
    leave({}, "d.journal");
    write(folder() + QStringLiteral("/e.journal"), "");
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(names(), QStringList());
}

TEST_F(LeftBehindTests, AJournalWhoseChangesAreAllInTheFileGoes) {
    write(file(), "[2]");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]")});
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(names(), QStringList());
}

TEST_F(LeftBehindTests, AChangedFileDoesNotMatterToAJournalWithoutUnsavedChanges) {
    write(file(), "[9]");
    leave({baseOf("[1]"), edit(1, 1, "2"), edit(1, 1, "1"), journal::Modified{false}});
    EXPECT_TRUE(find().empty());
}

// Saves.

TEST_F(LeftBehindTests, ChangesAfterASaveApplyToWhatWasSaved) {
    write(file(), "[2]");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), edit(2, 0, ",3")});
    recoverOne("[2,3]");
}

TEST_F(LeftBehindTests, ChangesMadeDuringASaveApplyToWhatWasSaved) {
    write(file(), "[2]");
    journal::Base saved = baseOf("[2]");
    saved.recordsSince = 1;
    leave({baseOf("[1]"), edit(1, 1, "2"), edit(2, 0, ",3"), saved, edit(4, 0, ",4")});
    recoverOne("[2,3,4]");
}

TEST_F(LeftBehindTests, ASaveThatDidNotComeAboutChangesNothing) {
    write(file(), "[1]");
    journal::Base saved = baseOf("[2]");
    saved.recordsSince = 1;
    leave({baseOf("[1]"), edit(1, 1, "2"), edit(2, 0, ",3"), saved, edit(4, 0, ",4")});
    recoverOne("[2,3,4]");
}

TEST_F(LeftBehindTests, TheStateOfASaveThatFailedDoesNotCount) {
    write(file(), "[2]");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), journal::SaveOutcome{false}, edit(2, 0, ",3")});
    EXPECT_EQ(findOne().state, State::stale);
}

TEST_F(LeftBehindTests, TheStateBeforeASaveDoesNotCountAfterIt) {
    write(file(), "[1]");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), journal::SaveOutcome{true}, edit(2, 0, ",3")});
    EXPECT_EQ(findOne().state, State::stale);
}

TEST_F(LeftBehindTests, ADocumentThatWasSavedElsewhereComesBackThere) {
    const QString other = home.filePath(QStringLiteral("otro.json"));
    write(file(), "[1]");
    write(other, "[2]");
    journal::Base saved = baseOf("[2]");
    saved.path = other.toStdString();
    leave({baseOf("[1]"), edit(1, 1, "2"), saved, edit(2, 0, ",3")});
    EXPECT_EQ(recoverOne("[2,3]").path, other);
}

TEST_F(LeftBehindTests, ADocumentThatWasToBeSavedElsewhereComesBackWhereItWas) {
    write(file(), "[1]");
    journal::Base saved = baseOf("[2]");
    saved.path = home.filePath(QStringLiteral("otro.json")).toStdString();
    leave({baseOf("[1]"), edit(1, 1, "2"), saved, edit(2, 0, ",3")});
    EXPECT_EQ(recoverOne("[2,3]").path, file());
}

// Files that have changed.

TEST_F(LeftBehindTests, ChangesOfAFileThatHasChangedAreStale) {
    write(file(), "[3]");
    leave({baseOf("[1]"), edit(1, 1, "2")});
    LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::stale);
    EXPECT_EQ(left.path, file());
    const auto recovered = recover(std::move(left));
    ASSERT_FALSE(recovered);
    EXPECT_EQ(recovered.error().message,
              QStringLiteral("El archivo ha cambiado desde entonces. Se conserva en «%1».")
                  .arg(folder() + QStringLiteral("/a.journal.apartado")));
    EXPECT_EQ(read(file()), "[3]");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal.apartado")});
    EXPECT_TRUE(find().empty());
}

TEST_F(LeftBehindTests, ChangesOfAFileThatIsNotThereForNowWaitForIt) {
    leave({baseOf("[1]"), edit(1, 1, "2")});
    {
        LeftBehind left = findOne();
        EXPECT_EQ(left.state, State::unreachable);
        EXPECT_EQ(left.path, file());
        const auto recovered = recover(std::move(left));
        ASSERT_FALSE(recovered);
        EXPECT_TRUE(recovered.error().message.contains(QStringLiteral("lo intentará de nuevo en el próximo inicio")));
    }
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal")});
    write(file(), "[1]");
    recoverOne("[2]");
}

TEST_F(LeftBehindTests, AFileThatGoesBeforeTheChangesAreRepeatedIsWaitedForToo) {
    write(file(), "[1]");
    leave({baseOf("[1]"), edit(1, 1, "2")});
    LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::recoverable);
    ASSERT_TRUE(QFile::remove(file()));
    EXPECT_FALSE(recover(std::move(left)));
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal")});
}

TEST_F(LeftBehindTests, AFolderInThePlaceOfTheFileIsNoReasonToWait) {
    ASSERT_TRUE(QDir().mkdir(file()));
    leave({baseOf("[1]"), edit(1, 1, "2")});
    EXPECT_EQ(findOne().state, State::stale);
}

TEST_F(LeftBehindTests, AJournalThatCannotBeReadIsToldOfAndStays) {
    // Larger than any memory, and next to nothing on the disk.
    write(folder() + QStringLiteral("/a.journal"), "");
    ASSERT_TRUE(QFile::resize(folder() + QStringLiteral("/a.journal"), qint64{1} << 43));
    LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::unreadable);
    EXPECT_EQ(left.path, folder() + QStringLiteral("/a.journal"));
    EXPECT_FALSE(recover(std::move(left)));
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal")});
}

TEST_F(LeftBehindTests, AFileThatChangesBeforeTheChangesAreRepeatedIsLeftAlone) {
    write(file(), "[1]");
    leave({baseOf("[1]"), edit(1, 1, "2")});
    LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::recoverable);
    write(file(), "[4]");
    EXPECT_FALSE(recover(std::move(left)));
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal.apartado")});
}

TEST_F(LeftBehindTests, ADocumentWhoseFileIsOfNoUseComesBackWhole) {
    journal::Base whole = newDocument();
    whole.path = filePath();
    leave({whole, journal::Replace{.hasText = true, .text = {literal("[7]")}}});
    const RecoveredDocument document = recoverOne("[7]");
    EXPECT_EQ(document.path, file());
    EXPECT_FALSE(document.state);
}

TEST_F(LeftBehindTests, AFileThatTheDocumentWasNotMadeFromIsUnknownToIt) {
    write(file(), "[somebody else's]");
    journal::Base whole = newDocument();
    whole.path = filePath();
    leave({whole, journal::Replace{.hasText = true, .text = {literal("[7]")}}});
    const RecoveredDocument document = recoverOne("[7]");
    ASSERT_TRUE(document.state);
    EXPECT_FALSE(document.state->isKnown());
    EXPECT_EQ(compareFile(file(), *document.state).result, FileComparison::Result::changed);
}

// Damage.

TEST_F(LeftBehindTests, WhatIsNoJournalIsDamaged) {
    write(folder() + QStringLiteral("/a.journal"), "no es un diario de nada, ni lo parece siquiera");
    LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::damaged);
    EXPECT_EQ(left.name, QStringLiteral("Sin título"));
    const auto aside = keepAside(std::move(left));
    ASSERT_TRUE(aside) << aside.error().message.toStdString();
    EXPECT_EQ(*aside, QStringLiteral("«%1/a.journal.apartado»").arg(folder()));
    EXPECT_TRUE(find().empty());
}

TEST_F(LeftBehindTests, AJournalThatDoesNotBeginWithABaseIsDamaged) {
    leave({edit(0, 0, "x")});
    EXPECT_EQ(findOne().state, State::damaged);
}

TEST_F(LeftBehindTests, ABaseThatHoldsForRecordsThatThereAreNotIsDamaged) {
    journal::Base impossibleBase = newDocument();
    impossibleBase.recordsSince = 1;
    leave({impossibleBase, edit(0, 0, "x")});
    EXPECT_EQ(findOne().state, State::damaged);
}

TEST_F(LeftBehindTests, ARecordThatWasNotWrittenWholeIsLeftOut) {
    leave({newDocument(), edit(0, 3, "[1]"), edit(1, 1, "2")});
    QFile torn(folder() + QStringLiteral("/a.journal"));
    ASSERT_TRUE(torn.resize(torn.size() - 1));
    const RecoveredDocument document = recoverOne("[1]");
    EXPECT_FALSE(document.isPartial);
    EXPECT_TRUE(document.journal);
}

TEST_F(LeftBehindTests, WhatComesBeforeTheDamageIsRecovered) {
    leave({newDocument(), edit(0, 3, "[1]"), edit(1, 1, "2"), edit(1, 1, "3")});
    const QString path = folder() + QStringLiteral("/a.journal");
    std::string bytes = read(path);
    const std::string last = journal::encode(edit(1, 1, "2"));
    const std::size_t found = bytes.find(last);
    ASSERT_NE(found, std::string::npos);
    bytes[found + last.size() - 1] ^= 1;
    write(path, bytes);
    {
        RecoveredDocument document = recoverOne("[1]");
        EXPECT_TRUE(document.isPartial);
        EXPECT_FALSE(document.journal);
        ASSERT_TRUE(document.damagedJournal);
        // Before the document is safe elsewhere, it is offered again.
        EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal")});
    }
    RecoveredDocument document = recoverOne("[1]");
    ASSERT_TRUE(std::move(*document.damagedJournal).keepAside());
    EXPECT_EQ(read(folder() + QStringLiteral("/a.journal.apartado")), bytes);
}

TEST_F(LeftBehindTests, RecordsThatCannotBeRepeatedAndAllAfterThemAreLeftOut) {
    leave({newDocument(), edit(0, 3, "[1]"), edit(100, 1, "2"), edit(1, 1, "3")});
    const RecoveredDocument document = recoverOne("[1]");
    EXPECT_TRUE(document.isPartial);
    EXPECT_FALSE(document.journal);
}

TEST_F(LeftBehindTests, AJournalOfWhichNothingCanBeRepeatedIsKeptAside) {
    leave({newDocument(), edit(100, 1, "2")});
    const auto recovered = recover(findOne());
    ASSERT_FALSE(recovered);
    EXPECT_EQ(recovered.error().message, QStringLiteral("La copia de recuperación está dañada. Se conserva en «%1».")
                                             .arg(folder() + QStringLiteral("/a.journal.apartado")));
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(QFile::permissions(folder() + QStringLiteral("/a.journal.apartado")) &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

// Backups of files that were written in place.

TEST_F(LeftBehindTests, ChangesApplyToTheBackupOfATornFile) {
    write(file(), "[2");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), edit(2, 0, ",3")});
    leaveBackup("[1]", "[2]");
    const RecoveredDocument document = recoverOne("[2,3]");
    EXPECT_EQ(document.path, file());
    ASSERT_TRUE(document.state);
    EXPECT_FALSE(document.state->isKnown());
    EXPECT_TRUE(document.backup);
    EXPECT_TRUE(document.journal);
    EXPECT_EQ(read(file()), "[2");
    EXPECT_TRUE(names().contains(QStringLiteral("b.backup")));
}

TEST_F(LeftBehindTests, ABackupOfAFileThatIsWholeGoes) {
    write(file(), "[2]");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), edit(2, 0, ",3")});
    leaveBackup("[1]", "[2]");
    EXPECT_FALSE(recoverOne("[2,3]").backup);
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.journal")});
}

TEST_F(LeftBehindTests, ABackupComesBackByItself) {
    write(file(), "[2");
    leaveBackup("[ 1 ]", "[2]");
    {
        const LeftBehind left = findOne();
        EXPECT_FALSE(left.journal);
        EXPECT_EQ(left.name, QStringLiteral("datos.json"));
    }
    const RecoveredDocument document = recoverOne("[ 1 ]");
    EXPECT_EQ(document.mode, EditorMode::tree);
    EXPECT_EQ(document.path, file());
    EXPECT_TRUE(document.backup);
    EXPECT_EQ(read(file()), "[2");
}

TEST_F(LeftBehindTests, ABackupThatIsNotUTF8IsKeptAside) {
    write(file(), "[2");
    leaveBackup("\xFF\xFE", "[2]");
    const auto recovered = recover(findOne());
    ASSERT_FALSE(recovered);
    EXPECT_EQ(recovered.error().message,
              QStringLiteral("Lo que contenía el archivo no está codificado en UTF-8. Se conserva en «%1».")
                  .arg(folder() + QStringLiteral("/b.backup.apartado")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("b.backup.apartado")});
    EXPECT_TRUE(find().empty());
}

TEST_F(LeftBehindTests, AStaleJournalDoesNotKeepTheBackupFromComingBack) {
    write(file(), "[2");
    leave({baseOf("[8]"), edit(1, 1, "2")});
    leaveBackup("[1]", "[2]");
    std::vector<LeftBehind> found = find();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(std::ranges::count(found, State::stale, &LeftBehind::state), 1);
    EXPECT_EQ(std::ranges::count(found, State::recoverable, &LeftBehind::state), 1);
}

// The end of it.

TEST_F(LeftBehindTests, WhatIsDiscardedIsGone) {
    write(file(), "[2");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), edit(2, 0, ",3")});
    leaveBackup("[1]", "[2]");
    discard(findOne());
    // Not the only whole copy of the file, though it is not offered any more.
    EXPECT_EQ(names(), QStringList{QStringLiteral("b.backup.apartado")});
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(read(file()), "[2");
}

TEST_F(LeftBehindTests, WhatIsKeptAsideTakesNobodysPlaceAndBothPathsAreTold) {
    write(folder() + QStringLiteral("/b.backup.apartado"), "of before");
    write(file(), "[2");
    leave({baseOf("[1]"), edit(1, 1, "2"), baseOf("[2]"), edit(2, 0, ",3")});
    leaveBackup("[1]", "[2]");
    const auto aside = keepAside(findOne());
    ASSERT_TRUE(aside);
    EXPECT_EQ(*aside, QStringLiteral("«%1/a.journal.apartado» y «%1/b.backup.apartado-2»").arg(folder()));
    EXPECT_EQ(read(folder() + QStringLiteral("/b.backup.apartado")), "of before");
}

TEST_F(LeftBehindTests, WhatIsLetGoIsFoundAgain) {
    leave({newDocument(), edit(0, 3, "[1]")});
    findOne();
    recoverOne("[1]");
}

TEST_F(LeftBehindTests, ASearchThatIsStoppedLosesNothing) {
    leave({newDocument(), edit(0, 3, "[1]")});
    stop.request_stop();
    EXPECT_TRUE(findLeftBehind(folder(), stop.get_token()).empty());
    recoverOne("[1]");
}

TEST_F(LeftBehindTests, ARecoveryThatIsStoppedLosesNothing) {
    leave({newDocument(), edit(0, 3, "[1]")});
    stop.request_stop();
    const auto recovered = recover(findOne(), stop.get_token());
    ASSERT_FALSE(recovered);
    EXPECT_TRUE(recovered.error().isCancellation);
    recoverOne("[1]");
}

TEST_F(LeftBehindTests, ADamagedBackupIsReportedAndKept) {
    write(file(), "[2");
    leaveBackup("[1]", "[2]");
    const QString path = folder() + QStringLiteral("/b.backup");
    std::string bytes = read(path);
    bytes[bytes.find("[1]") + 1] = '7';
    write(path, bytes);
    LeftBehind left = findOne();
    EXPECT_EQ(left.state, State::damaged);
    EXPECT_FALSE(recover(std::move(left)));
    EXPECT_EQ(names(), QStringList{QStringLiteral("b.backup.apartado")});
}

} // namespace
} // namespace quelm
