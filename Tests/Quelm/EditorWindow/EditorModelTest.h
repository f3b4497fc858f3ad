#pragma once

#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/Support/FakeClock.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// While it lives, nothing that is started in the common pool begins.
class BlockedPool {
public:
    BlockedPool() {
        for (int thread = 0; thread < pool().maxThreadCount(); ++thread)
            pool().start([semaphore = semaphore_] { semaphore->acquire(); });
    }
    ~BlockedPool() { release(); }
    BlockedPool(const BlockedPool&) = delete;
    BlockedPool& operator=(const BlockedPool&) = delete;

    /// Lets what was started run to its end, and its results be delivered.
    void finish() {
        release();
        pool().waitForDone();
        QCoreApplication::processEvents();
    }

private:
    static QThreadPool& pool() { return backgroundThreads(); }

    void release() {
        if (!std::exchange(isReleased_, true))
            semaphore_->release(pool().maxThreadCount());
    }

    std::shared_ptr<QSemaphore> semaphore_ = std::make_shared<QSemaphore>();
    bool isReleased_ = false;
};

/// The model of a window without the window, in text mode with a text buffer as a text editor attaches it.
class EditorModelTest : public testing::Test {
protected:
    static constexpr auto pretty = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false);
    static constexpr auto compact = JSONStyle::compact();

    void openTree(std::string_view text) {
        Preferences::setInitialMode(Preferences::InitialMode::tree);
        makeModel(text);
    }

    void openText(std::string_view text) {
        Preferences::setInitialMode(Preferences::InitialMode::text);
        makeModel(text);
        attachTextBuffer();
        model->validateShownText();
    }

    void attachTextBuffer() { document->attachTextBuffer(std::make_shared<TextStorage>(*document->content().text)); }

    /// Replaces the text as a user would.
    void type(std::string_view text) {
        TextStorage& buffer = *document->textBuffer();
        buffer.replaceCharacters({0, buffer.length()}, TextRope(SharedText(text)));
        model->noteTextChange();
    }

    std::string shownText() const { return std::string(document->textBuffer()->text().contiguous().view()); }
    std::string savedText() const { return std::string(JSONDocument::fileContents(document->snapshot()).view()); }

    /// Lets the operation come to its end.
    void wait() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model->isBusy() && !model->isExporting(); }));
    }

    std::string message() const { return model->errorMessage().value_or(QString()).toStdString(); }

    /// "3:14"; empty without a place to go to.
    std::string place() const {
        const std::optional<TextLocation>& place = model->goTo();
        return place ? std::to_string(place->line) + ":" + std::to_string(place->column) : std::string();
    }

    std::vector<std::string> takeLog() { return std::exchange(log, {}); }

    TemporaryPreferences preferences;
    FakeClock clock;
    UndoManager undoManager;
    std::shared_ptr<JSONDocument> document;
    std::optional<EditorModel> model;
    /// What the model and the document announced.
    std::vector<std::string> log;

private:
    void makeModel(std::string_view text) {
        document = documentWithText(text);
        model.emplace(document, clock);
        model->setUndoManager(&undoManager);
        undoManager.setStateToken(&document->stateToken());
        follow();
    }

    void follow() {
        const auto note = [this](const char* entry) { return [this, entry] { log.emplace_back(entry); }; };
        EditorModel* signals_ = &*model;
        QObject::connect(signals_, &EditorModel::willReadDocument, signals_, note("read"));
        QObject::connect(signals_, &EditorModel::errorMessageChanged, signals_, note("message"));
        QObject::connect(signals_, &EditorModel::goToChanged, signals_, note("goTo"));
        QObject::connect(signals_, &EditorModel::exportChanged, signals_, note("export"));
        QObject::connect(signals_, &EditorModel::isGoToLinePresentedChanged, signals_, note("goToLine"));
        QObject::connect(signals_, &EditorModel::isWorkShownChanged, signals_, note("work"));
        QObject::connect(signals_, &EditorModel::exportingStarted, signals_, note("exporting"));
        QObject::connect(signals_, &EditorModel::exportingFinished, signals_,
                         [this](bool succeeded) { log.emplace_back(succeeded ? "exported" : "not exported"); });
        QObject::connect(signals_, &EditorModel::isBusyChanged, signals_, [this] {
            log.emplace_back(model->isBusy() ? "busy" : undoManager.canUndo() ? "idle with steps" : "idle");
        });
        QObject::connect(document.get(), &JSONDocument::modeChanged, signals_, note("mode"));
        QObject::connect(document.get(), &JSONDocument::revisionChanged, signals_, note("revision"));
    }
};

} // namespace quelm
