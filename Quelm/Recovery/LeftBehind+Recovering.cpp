// Documents from what was left behind.

#include "FileCore/FileLoading.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Foundation/Preferences.h"
#include "Quelm/Recovery/JournalReplay.h"
#include "Quelm/Recovery/JournalSummary.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "Quelm/Recovery/RecoveryStart.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <new>
#include <span>
#include <utility>

namespace quelm {

namespace {

struct Recovery {
    Q_DECLARE_TR_FUNCTIONS(quelm::Recovery)
};

/// Why there is no document, and what becomes of what was left behind.
struct Refusal {
    enum class Kind : std::uint8_t { cancelled, noMemory, unreachable, stale, damaged, notUTF8 };
    Kind kind = Kind::damaged;
};
using Result = std::expected<RecoveredDocument, Refusal>;

std::unexpected<Refusal> refused(Refusal::Kind kind) {
    return std::unexpected(Refusal{kind});
}

/// What cannot be repeated for reasons of its own is damaged.
Refusal::Kind kindOf(ReplayError error) {
    switch (error) {
    case ReplayError::cancelled:
        return Refusal::Kind::cancelled;
    case ReplayError::noMemory:
        return Refusal::Kind::noMemory;
    case ReplayError::impossible:
    case ReplayError::tooLarge:
        break;
    }
    return Refusal::Kind::damaged;
}

Refusal::Kind kindOf(const LoadFailure& failure) {
    switch (failure.reason) {
    case LoadFailure::Reason::cancelled:
        return Refusal::Kind::cancelled;
    case LoadFailure::Reason::noMemory:
    case LoadFailure::Reason::tooLarge:
        return Refusal::Kind::noMemory;
    case LoadFailure::Reason::system:
        return Refusal::Kind::unreachable;
    case LoadFailure::Reason::folder:
    case LoadFailure::Reason::notAFile:
        break;
    }
    return Refusal::Kind::stale;
}

Refusal::Kind kindOf(NoRecoveryStart reason) {
    switch (reason) {
    case NoRecoveryStart::cancelled:
        return Refusal::Kind::cancelled;
    case NoRecoveryStart::unreachable:
        return Refusal::Kind::unreachable;
    case NoRecoveryStart::changed:
        break;
    }
    return Refusal::Kind::stale;
}

FileState stateOf(const LoadedFile& file) {
    return {.stamp = file.stamp, .checksum = file.checksum};
}

/// The file of a document that was not made from it: nobody may take what is there for what the document came from.
std::optional<FileState> stateOfOtherFile(const std::string& path) {
    const auto stamp = FileStamp::of(path);
    const bool isGone = !stamp && (stamp.error().code == ENOENT || stamp.error().code == ENOTDIR);
    return isGone ? std::nullopt : std::optional(FileState::unknown());
}

/// The bytes on which the records are repeated; notes what is known of the document's file.
std::expected<SharedText, Refusal> startingBytes(const RecoveryStart& start, const journal::Base& base,
                                                 std::optional<FileBackup>& backup, RecoveredDocument& document,
                                                 const std::stop_token& stop) {
    switch (start.source) {
    case RecoveryStart::Source::nothing:
        if (base.path)
            document.state = stateOfOtherFile(*base.path);
        return SharedText();
    case RecoveryStart::Source::file: {
        auto file = loadFile(*base.path, stop);
        if (!file)
            return refused(kindOf(file.error()));
        if (file->checksum != *base.checksum)
            return refused(Refusal::Kind::stale);
        document.state = stateOf(*file);
        return std::move(file->bytes);
    }
    case RecoveryStart::Source::backup: {
        auto bytes = readBackup(*backup);
        // It was whole when it was found: it may be readable another time.
        if (!bytes)
            return refused(Refusal::Kind::unreachable);
        document.state = stateOfOtherFile(*base.path);
        document.backup = std::exchange(backup, std::nullopt);
        return *std::move(bytes);
    }
    }
    return refused(Refusal::Kind::damaged);
}

/// Repeats records until one that cannot be; the document is then a partial one.
std::expected<void, Refusal> repeatRecords(std::span<const SharedText> records, JournalReplay& replay,
                                           RecoveredDocument& document) {
    for (const SharedText& bytes : records) {
        const std::optional<journal::Record> record = journal::decode(bytes);
        const auto repeated = record ? replay.apply(*record) : std::unexpected(ReplayError::impossible);
        if (repeated)
            continue;
        if (kindOf(repeated.error()) != Refusal::Kind::damaged)
            return refused(kindOf(repeated.error()));
        document.isPartial = true;
        break;
    }
    return {};
}

/// Does for the editor what would else hold up the main thread.
void prepareForDisplay(const RecoveredDocument& document) {
    if (document.mode == EditorMode::text)
        document.content.text->prepare();
    else
        ContentConversion::prepareForDisplay(*document.content.tree);
}

/// Takes the backup if the document begins from it.
Result fromJournal(const JournalRecovery& journal, std::optional<FileBackup>& backup, const std::stop_token& stop) {
    const JournalSummary summary = JournalSummary::of(journal.contents(), stop);
    const std::span<const FileBackup> backups(backup ? &*backup : nullptr, backup ? 1 : 0);
    const auto found = findRecoveryStart(summary, backups, stop);
    if (stop.stop_requested())
        return refused(Refusal::Kind::cancelled);
    if (!found)
        return refused(summary.starts.empty() ? Refusal::Kind::damaged : kindOf(found.error()));
    const JournalSummary::Start& start = summary.starts[found->index];

    RecoveredDocument document;
    document.isPartial = summary.isDamaged;
    document.numbers = summary.numbers;
    if (start.base.path)
        document.path = QString::fromStdString(*start.base.path);
    auto bytes = startingBytes(*found, start.base, backup, document, stop);
    if (!bytes)
        return std::unexpected(bytes.error());
    auto replay = JournalReplay::start(start.base, *std::move(bytes), summary.returnsSince(start), stop);
    if (!replay)
        return refused(kindOf(replay.error()));
    const auto records = std::span(journal.contents().records).first(summary.recordCount).subspan(start.record);
    if (auto repeated = repeatRecords(records, *replay, document); !repeated)
        return std::unexpected(repeated.error());
    // Without any edit there would be nothing in the document that the file does not hold.
    if (!replay->isModified())
        return refused(Refusal::Kind::damaged);
    document.mode = replay->mode();
    auto content = std::move(*replay).content();
    if (!content)
        return refused(kindOf(content.error()));
    document.content = *std::move(content);
    prepareForDisplay(document);
    return document;
}

/// What the file held before it was written in place.
Result fromBackup(std::optional<FileBackup>& backup, const std::stop_token& stop) {
    auto bytes = readBackup(*backup);
    if (!bytes)
        return refused(Refusal::Kind::unreachable);
    auto content = JSONContent::fromData(*std::move(bytes), stop);
    if (stop.stop_requested())
        return refused(Refusal::Kind::cancelled);
    if (!content)
        return refused(Refusal::Kind::notUTF8);
    RecoveredDocument document;
    const bool asText = Preferences::initialMode() == Preferences::InitialMode::text || !content->tree;
    document.mode = asText ? EditorMode::text : EditorMode::tree;
    document.content = *std::move(content);
    document.path = QFile::decodeName(backup->original.c_str());
    document.state = stateOfOtherFile(backup->original);
    document.backup = std::exchange(backup, std::nullopt);
    prepareForDisplay(document);
    return document;
}

Result recovered(LeftBehind& leftBehind, const std::stop_token& stop) {
    if (leftBehind.state == LeftBehind::State::unreachable || leftBehind.state == LeftBehind::State::unreadable)
        return refused(Refusal::Kind::unreachable);
    if (leftBehind.state == LeftBehind::State::stale)
        return refused(Refusal::Kind::stale);
    if (leftBehind.state == LeftBehind::State::damaged)
        return refused(Refusal::Kind::damaged);
    try {
        if (leftBehind.journal)
            return fromJournal(*leftBehind.journal, leftBehind.backup, stop);
        return leftBehind.backup ? fromBackup(leftBehind.backup, stop) : refused(Refusal::Kind::damaged);
    } catch (const std::bad_alloc&) {
        return refused(Refusal::Kind::noMemory);
    }
}

QString reasonOf(Refusal::Kind kind) {
    switch (kind) {
    case Refusal::Kind::noMemory:
        return Recovery::tr("No hay memoria suficiente. La copia de recuperación sigue en su sitio y se ofrecerá otra "
                            "vez al abrir Quelm.");
    case Refusal::Kind::unreachable:
        return Recovery::tr("El archivo no está en su sitio o no se puede leer. La copia de recuperación se conserva y "
                            "Quelm lo intentará de nuevo en el próximo inicio.");
    case Refusal::Kind::stale:
        return Recovery::tr("El archivo ha cambiado desde entonces.");
    case Refusal::Kind::notUTF8:
        return Recovery::tr("Lo que contenía el archivo no está codificado en UTF-8.");
    case Refusal::Kind::cancelled:
    case Refusal::Kind::damaged:
        break;
    }
    return Recovery::tr("La copia de recuperación está dañada.");
}

/// What may be recovered another time stays as it is; anything else is not offered again.
FileError errorFor(Refusal::Kind kind, LeftBehind leftBehind) {
    if (kind == Refusal::Kind::cancelled)
        return {.message = {}, .isCancellation = true};
    if (kind == Refusal::Kind::noMemory || kind == Refusal::Kind::unreachable)
        return {.message = reasonOf(kind)};
    const auto aside = keepAside(std::move(leftBehind));
    return {.message = reasonOf(kind) + QChar::Space +
                       (aside ? Recovery::tr("Se conserva en %1.").arg(*aside) : aside.error().message)};
}

} // namespace

std::expected<RecoveredDocument, FileError> recover(LeftBehind leftBehind, const std::stop_token& stop) {
    Result result = recovered(leftBehind, stop);
    if (!result)
        return std::unexpected(errorFor(result.error().kind, std::move(leftBehind)));
    if (!leftBehind.journal)
        return *std::move(result);
    // A journal that is not whole is left as it is, beside a new one. One that cannot be gone on with is found again.
    if (result->isPartial)
        result->damagedJournal = std::move(leftBehind.journal);
    else if (auto journal = std::move(*leftBehind.journal).continueWriting())
        result->journal = *std::move(journal);
    return *std::move(result);
}

} // namespace quelm
