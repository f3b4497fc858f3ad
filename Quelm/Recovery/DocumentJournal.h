#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/JournalFile.h"
#include "FileCore/JournalRecovery.h"
#include "Quelm/Documents/DocumentRecorder.h"
#include "Quelm/Foundation/Clock.h"
#include "Quelm/Recovery/JournalNumbers.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace quelm {

class JSONDocument;
class JournalThread;

/// Keeps a document's unsaved changes in a journal, from which they can be recovered when the program ends before they
/// are saved. The file comes into being with the first change and goes when the document is saved or its changes are
/// given up; while all of them are undone it stays, and says so. What it costs follows the changes, not the document.
/// What is recorded survives the end of the process at once, as far as the system has taken it, and a loss of power
/// after a second at most. It writes on another thread and never holds up the one that edits.
///
/// For the main thread, like the document, which must outlive it.
class DocumentJournal : public QObject, private DocumentRecorder {
    Q_OBJECT

public:
    /// Records the document's changes from now on. The document holds what its file held in the configuration's
    /// `fileState` (an empty object without a file); if it counts as modified it is recorded whole at once. `folder` is
    /// created (0700) when it is needed. `thread` and `clock` must outlive the journal, and `thread` what `willSave`
    /// returned.
    DocumentJournal(JSONDocument& document, QString folder, JournalThread& thread, Clock& clock = Clock::system());

    /// Goes on with the journal from which the document was recovered.
    DocumentJournal(JSONDocument& document, QString folder, JournalThread& thread, JournalFile journal,
                    const JournalNumbers& numbers, Clock& clock = Clock::system());

    /// Leaves the journal to be found when the program starts again, unless all changes were undone.
    ~DocumentJournal() override;

    /// The document is about to be saved, as it is now: to be called together with `JSONDocument::snapshot`. What it
    /// returns is for `SaveOptions::willReplace`, on any one other thread: it puts down that the file is about to become
    /// that state, and lets the file be replaced whether that worked or not. One at a time, until `didSave` or
    /// `didNotSave`.
    std::function<bool(const ContentChecksum&)> willSave(const QString& path);
    /// The file holds that state, and the configuration says so; the document learns it before or after this
    /// (`JSONDocument::noteSaved`), in the same turn of the event loop.
    void didSave();
    void didNotSave();
    /// As `didSave`, but a loss of power may bring back what the file held before: the journal stays, for that case,
    /// until the next save.
    void didSaveInDoubt();

    /// The document's changes are not wanted any more: takes the journal away, for good. Should there be others
    /// nevertheless, the document is recorded whole.
    void discard();

    /// The file does not hold what the changes were made from any more, and the document is kept as it is nonetheless:
    /// records it whole, if it is modified, so that it can be recovered whatever has become of the file.
    void standAlone();

    /// The document is what could be understood of that journal, of which it does not go on: keeps it aside once the
    /// document's own is safe.
    void takePlaceOf(JournalRecovery damaged);

    /// How long after a failure the next change is tried to be recorded, with all before it.
    static constexpr std::chrono::seconds retryDelay{30};

    /// Returns when all that was recorded is written and synchronized, or has failed: for tests and the end.
    void flush();

Q_SIGNALS:
    /// Changes made from now on may not be recovered, as long as what stands in the way does; told once.
    void didFail(const QString& message);

private:
    void didEditText(const TextRope& before, const TextRope& after, std::int64_t location, std::int64_t removed,
                     std::int64_t inserted) override;
    void willEditTree(const JSONTree& tree, const TreeEdit& edit) override;
    void didEditTree(const JSONTree& tree) override;
    void didFailToEditTree() override;
    void didReplaceContent(const ContentReplacement& replacement, const JSONContent& content) override;
    void didChangeMode(EditorMode mode, const JSONContent& content) override;
    void didChangeModified(bool isModified) override;
    void didApply() override;

    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace quelm
