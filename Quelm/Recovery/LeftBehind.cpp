#include "Quelm/Recovery/LeftBehind.h"

#include "FileCore/SystemError.h"
#include "Quelm/Recovery/JournalSummary.h"
#include "Quelm/Recovery/RecoveryStart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <new>
#include <span>
#include <utility>

namespace quelm {

namespace {

struct Recovery {
    Q_DECLARE_TR_FUNCTIONS(quelm::Recovery)
};

const QString& journalPattern() {
    static const QString pattern = QStringLiteral("*.journal");
    return pattern;
}

QString nameOf(const std::optional<QString>& path) {
    return path ? QFileInfo(*path).fileName() : Recovery::tr("Sin título");
}

/// The path that a journal tells last.
std::optional<QString> pathIn(const JournalSummary& summary) {
    if (summary.starts.empty() || !summary.starts.back().base.path)
        return std::nullopt;
    return QString::fromStdString(*summary.starts.back().base.path);
}

/// Looks at one journal after the other, and takes from the backups those that belong to one.
class Search {
public:
    Search(std::vector<FileBackup> backups, const std::stop_token& stop) : backups_(std::move(backups)), stop_(stop) {}

    void lookAt(const QFileInfo& file) {
        try {
            auto journal = JournalRecovery::open(QFile::encodeName(file.filePath()).toStdString());
            if (!journal)
                noteUnreadable(file);
            else if (*journal)
                examine(**std::move(journal), file);
        } catch (const std::bad_alloc&) {
            noteUnreadable(file);
        }
    }

    std::vector<LeftBehind> found() && {
        for (FileBackup& backup : backups_) {
            const QString original = QFile::decodeName(backup.original.c_str());
            const QFileInfo file(QFile::decodeName(backup.path.c_str()));
            const auto state = backup.isDamaged ? LeftBehind::State::damaged : LeftBehind::State::recoverable;
            found_.push_back({.state = state,
                              .journal = std::nullopt,
                              .backup = std::move(backup),
                              .path = original.isEmpty() ? std::nullopt : std::optional(original),
                              .name = original.isEmpty() ? file.fileName() : nameOf(original),
                              .time = file.lastModified()});
        }
        std::ranges::stable_sort(found_, {}, &LeftBehind::time);
        return std::move(found_);
    }

private:
    /// What cannot be read, for want of memory or permission, stays as it is.
    void noteUnreadable(const QFileInfo& file) {
        found_.push_back({.state = LeftBehind::State::unreadable,
                          .journal = std::nullopt,
                          .backup = std::nullopt,
                          .path = file.filePath(),
                          .name = file.fileName(),
                          .time = file.lastModified()});
    }

    void examine(JournalRecovery journal, const QFileInfo& file) {
        const JournalSummary summary = JournalSummary::of(journal.contents(), stop_);
        const auto start = findRecoveryStart(summary, backups_, stop_);
        if (stop_.stop_requested())
            return;
        if (!summary.isDamaged && !isWorthKeeping(summary, start)) {
            forgetFinishedSave(summary, start);
            // A journal that cannot be removed is found again, and nothing is lost.
            (void)std::move(journal).remove();
            return;
        }
        LeftBehind left;
        left.path = pathIn(summary);
        left.state = stateOf(summary, start);
        if (left.state == LeftBehind::State::recoverable) {
            const auto& path = summary.starts[start->index].base.path;
            left.path = path ? std::optional(QString::fromStdString(*path)) : std::nullopt;
            forgetFinishedSave(summary, start);
            if (start->source == RecoveryStart::Source::backup) {
                left.backup = std::move(backups_[start->backup]);
                backups_.erase(backups_.begin() + static_cast<std::ptrdiff_t>(start->backup));
            }
        }
        left.journal = std::move(journal);
        left.name = nameOf(left.path);
        left.time = file.lastModified();
        found_.push_back(std::move(left));
    }

    using FoundStart = std::expected<RecoveryStart, NoRecoveryStart>;

    static bool isWorthKeeping(const JournalSummary& summary, const FoundStart& start) {
        if (start)
            return summary.isModifiedSince(summary.starts[start->index]);
        // The file has changed: what counts is whether anything had been to save at the end.
        return !summary.starts.empty() && summary.isModifiedSince(summary.starts.front());
    }

    static LeftBehind::State stateOf(const JournalSummary& summary, const FoundStart& start) {
        if (summary.starts.empty())
            return LeftBehind::State::damaged;
        if (!start)
            return start.error() == NoRecoveryStart::unreachable ? LeftBehind::State::unreachable
                                                                 : LeftBehind::State::stale;
        return summary.isModifiedSince(summary.starts[start->index]) ? LeftBehind::State::recoverable
                                                                     : LeftBehind::State::damaged;
    }

    /// A file that holds what was saved in it is whole: what it held before the save is not needed any more.
    void forgetFinishedSave(const JournalSummary& summary, const FoundStart& start) {
        if (!start || start->source != RecoveryStart::Source::file)
            return;
        const std::string& path = *summary.starts[start->index].base.path;
        const auto isFormer = [&](const FileBackup& backup) {
            const auto before = std::span(summary.starts).first(start->index);
            return isBackupOf(backup, path) && std::ranges::any_of(before, [&](const JournalSummary::Start& each) {
                       return each.base.checksum == backup.checksum;
                   });
        };
        std::erase_if(backups_, [&](const FileBackup& backup) {
            if (!isFormer(backup))
                return false;
            removeBackup(backup);
            return true;
        });
    }

    std::vector<FileBackup> backups_;
    const std::stop_token& stop_;
    std::vector<LeftBehind> found_;
};

} // namespace

std::vector<LeftBehind> findLeftBehind(const QString& folder, const std::stop_token& stop) {
    Search search(findBackups(QFile::encodeName(folder).toStdString()), stop);
    const QFileInfoList files =
        QDir(folder).entryInfoList({journalPattern()}, QDir::Files | QDir::NoSymLinks, QDir::Time | QDir::Reversed);
    for (const QFileInfo& file : files) {
        if (stop.stop_requested())
            break;
        search.lookAt(file);
    }
    return std::move(search).found();
}

std::expected<QString, FileError> keepAside(LeftBehind leftBehind) {
    QStringList paths;
    const auto note = [&](const std::expected<std::string, SystemError>& aside) -> std::expected<void, FileError> {
        if (!aside)
            return std::unexpected(FileError{Recovery::tr("No se pudo apartar la copia de recuperación: %1.")
                                                 .arg(QString::fromStdString(aside.error().description()))});
        paths.append(Recovery::tr("«%1»").arg(QFile::decodeName(aside->c_str())));
        return {};
    };
    std::expected<void, FileError> kept;
    if (leftBehind.journal)
        kept = note(std::move(*leftBehind.journal).keepAside());
    if (leftBehind.backup)
        if (auto keptBackup = note(keepBackupAside(*leftBehind.backup)); !keptBackup)
            kept = std::move(keptBackup);
    if (!kept)
        return std::unexpected(std::move(kept).error());
    return paths.join(Recovery::tr(" y "));
}

void discard(LeftBehind leftBehind) {
    // What cannot be removed is offered again.
    if (leftBehind.journal)
        (void)std::move(*leftBehind.journal).remove();
    if (leftBehind.backup)
        (void)keepBackupAside(*leftBehind.backup);
}

} // namespace quelm
