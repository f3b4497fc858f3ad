#pragma once

#include "Quelm/Documents/FileError.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/BackgroundTask.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <expected>
#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class QMessageBox;

namespace quelm {

/// Opens documents in windows and saves them. Files are read and written off the main thread; what fails is told in an
/// alert. It lives longer than all of its windows.
class DocumentController : public QObject {
    Q_OBJECT

public:
    /// `prepareWindow` gives every new window its menus before it is shown.
    explicit DocumentController(std::function<void(EditorView&)> prepareWindow, QObject* parent = nullptr);
    ~DocumentController() override;

    /// A window with an empty object.
    void newDocument();

    /// A window with the file, or the window that has it already. It appears when the file has been read, or after a
    /// moment to say that this takes longer.
    void open(const QString& path);

    /// Asks which files to open, first in the folder of the window's document.
    void showOpenDialog(EditorView& window);

    /// Writes the window's document to its file, or asks for one.
    void save(EditorView& window);

    /// Asks for a file, which becomes the document's when it has been written.
    void saveAs(EditorView& window);

    const std::vector<EditorView*>& windows() const { return windows_; }

    /// Closes all windows, once it has been asked what becomes of the changes of each; none if one question is
    /// cancelled.
    void quit();

    /// Asks what becomes of the window's changes before it closes.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Whether there is neither a window nor an alert, and nothing being opened or saved.
    bool isIdle() const { return windows_.empty() && alertCount_ == 0 && saveCount_ == 0; }

    /// Whether files were to be opened and none could.
    bool hasOnlyFailed() const { return hasFailed_ && !hasOpened_; }

Q_SIGNALS:
    void becameIdle();

private:
    EditorView* addWindow(std::shared_ptr<JSONDocument> document);
    void removeWindow(EditorView* window);
    void askBeforeClosing(EditorView& window);
    void saveAndClose(EditorView& window);
    void discardAndClose(EditorView& window);
    void cancelClosing(EditorView& window);
    void startSaving(EditorView& window, StateToken::Value token);
    void finishSaving(EditorView& window);
    void continueQuitting();
    void finishOpening(EditorView* window, std::expected<JSONContent, FileError> content);
    void write(EditorView& window, const QString& path);
    void alert(QWidget* parent, const QString& message, const QString& details);
    void announceIdle();

    std::function<void(EditorView&)> prepareWindow_;
    std::vector<EditorView*> windows_;
    std::unordered_map<EditorView*, BackgroundTask> openings_;
    /// Windows whose changes are being asked about.
    std::unordered_map<EditorView*, QPointer<QMessageBox>> questions_;
    /// Windows that close as soon as they are saved, and those that close with their changes.
    std::unordered_set<EditorView*> closingWhenSaved_;
    std::unordered_set<EditorView*> discarding_;
    struct Saving {
        int count = 0;
        /// The state that the last of them saves.
        StateToken::Value token = 0;
    };
    std::unordered_map<EditorView*, Saving> savings_;
    bool isQuitting_ = false;
    /// One thread: what is saved later is written later.
    QThreadPool savingThread_;
    int alertCount_ = 0;
    int saveCount_ = 0;
    bool hasOpened_ = false;
    bool hasFailed_ = false;
};

} // namespace quelm
