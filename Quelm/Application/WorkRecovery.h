#pragma once

#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/Recovery/LeftBehind.h"

#include <QObject>
#include <QString>

#include <expected>
#include <memory>
#include <vector>

namespace quelm {

class DocumentController;
class EditorView;

/// Offers, once after the start, the unsaved changes that a program which came to an unexpected end left behind: each
/// becomes a window with an edited document. What cannot be recovered is kept aside, and that is said; what cannot be for
/// now stays, to be tried again at the next start. For the main thread; looks for them and recovers them on others.
class WorkRecovery : public QObject {
    Q_OBJECT

public:
    /// `documents` must outlive it.
    WorkRecovery(DocumentController& documents, QString folder, QObject* parent = nullptr);
    ~WorkRecovery() override;

    /// Looks for what was left behind, and asks when there is something.
    void start();

    /// Whether it is done: nothing is looked for, asked or recovered any more.
    bool isIdle() const { return runningCount_ == 0; }

Q_SIGNALS:
    void becameIdle();

private:
    using Found = std::vector<std::shared_ptr<LeftBehind>>;

    void offer(Found found);
    void askWhenShown(const Found& found, int looksLeft);
    void ask(const Found& found);
    void askUnreachable(const Found& unreachable);
    void reportLost(const Found& lost);
    void keepAside(const Found& found);
    void recover(const Found& found);
    void discard(const Found& found);
    void finish(const QString& name, std::expected<RecoveredDocument, FileError> recovered);
    EditorView& window();
    void begin() { ++runningCount_; }
    void end();

    DocumentController& documents_;
    const QString folder_;
    int runningCount_ = 0;
};

} // namespace quelm
