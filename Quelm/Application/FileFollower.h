#pragma once

#include "Quelm/Application/DocumentReload.h"
#include "Quelm/Documents/FileComparison.h"
#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/Foundation/Clock.h"
#include "Quelm/Foundation/StateToken.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QMessageBox;

namespace quelm {

class EditorView;
class FileExpectation;
enum class OutsideChangeOccasion : unsigned char;

/// Keeps a window true to its file when somebody else changes that. A document without changes is read anew in silence;
/// of one that has some it is asked, once for every state of the file, which of the two is to be kept. A file that is
/// gone, or cannot be read any more, is told, once, and what is open counts as not saved from then on. What may be the
/// middle of somebody's writing has to stay for `confirmation` before anything follows from it.
///
/// Nothing happens in a window in which something is going on: it waits. For the main thread, as a child of the window.
class FileFollower : public QObject {
    Q_OBJECT

public:
    /// What only the owner of the window knows.
    struct Owner {
        /// Whether the document is being saved, or read anew for another reason. `resume` is to be called afterwards.
        std::function<bool()> isHeld;
        std::function<void()> saveAs;
    };
    /// The clock must outlive it.
    FileFollower(EditorView& window, Owner owner, Clock& clock);
    ~FileFollower() override;

    /// Looks whether the file is still what it was, off the main thread, and does what follows from it. Nothing for a
    /// document without a file.
    void check();

    /// Does so if it was asked for while it could not be done.
    void resume();

    // Saving.

    /// What the file at the path must still hold when the document is saved there; null when it is not the document's
    /// own, or nothing is known of it.
    std::shared_ptr<FileExpectation> expectation(const QString& path) const;

    /// The document was about to be saved over a file that is in that state: asks, and calls `save` when the user wants
    /// the file to be saved over, or there is nothing to ask about any more. Never when the question is only left.
    void askBeforeSaving(const FileStamp& found, std::function<void()> save);

    /// The document is what its file holds, as the configuration says: it was saved, or read anew.
    void noteInStep();

    /// Leaves the document as it is: what is being read for it is not wanted any more.
    void cancelReload();
    bool isReloading() const { return reload_ != nullptr; }

    /// Whether the file is being looked at or read at this moment, and how often it has been looked at: for tests.
    bool isAtWork() const { return isReloading() || comparison_.isRunning(); }
    std::int64_t checkCount() const { return checkCount_; }

    static constexpr std::chrono::milliseconds confirmation{1000};
    /// How long a window is left alone in which something is going on.
    static constexpr std::chrono::milliseconds retryDelay{500};

Q_SIGNALS:
    /// The file is gone, or holds something else than what the changes of the document were made from.
    void didPartFromFile();
    /// The document is what its file holds now: it has no changes.
    void didReload();

private:
    /// A state in which the file was seen: absent when it was gone.
    struct Sight {
        std::optional<FileStamp> stamp;
        friend bool operator==(const Sight&, const Sight&) = default;
    };
    enum class Cause : std::uint8_t { outside, user };

    void follow(const FileComparison& found);
    void followReturn();
    void followChange(const FileStamp& stamp);
    void followLoss();
    void settle();

    bool isUnedited() const;
    bool canBeTouched() const;
    bool hasDialog() const;
    bool isConfirmed(const Sight& sight);
    void checkAfter(std::chrono::milliseconds delay);

    void startReload(Cause cause, const FileStamp& stamp);
    void finishReload(Cause cause, const FileStamp& stamp, std::expected<ReloadedDocument, FileError> result);
    void install(ReloadedDocument reloaded);
    void followFailure(const FileStamp& stamp, const FileError& error);

    void ask(const FileStamp& stamp, OutsideChangeOccasion occasion);
    void keepMine();
    void leaveQuestion();
    void dismissQuestion();
    void tell(const Sight& sight, const QString& message, const QString& details);
    void dismissNotice();
    QString name() const;

    EditorView& window_;
    const Owner owner_;
    Clock& clock_;

    /// That the file holds something else is known of a state of it, as long as the document is still of this one.
    struct KnownChange {
        FileState document;
        FileState file;
    };

    BackgroundTask comparison_;
    std::optional<KnownChange> knownChange_;
    std::unique_ptr<DocumentReload> reload_;
    Cause reloadCause_ = Cause::outside;
    /// Something may have happened since the one that is under way was begun.
    bool isCheckWanted_ = false;
    std::int64_t checkCount_ = 0;
    DelayedCall checkCall_;

    /// What has to be seen once more before anything follows from it.
    std::optional<Sight> doubted_;
    /// Until it may be.
    DelayedCall confirmationCall_;
    std::optional<Sight> told_;
    QPointer<QMessageBox> notice_;
    /// The state of a document that had no changes when its file was lost.
    std::optional<StateToken::Value> cleanState_;

    QPointer<QMessageBox> question_;
    std::optional<FileStamp> asked_;
    /// What was asked about without a decision: it is asked again when the document is to be saved over it only.
    std::optional<FileStamp> left_;
    /// What the file may be saved over.
    std::optional<FileStamp> accepted_;
    /// What the question holds up, if it does.
    std::function<void()> pendingSave_;
};

} // namespace quelm
