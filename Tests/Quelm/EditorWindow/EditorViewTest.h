#pragma once

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/EditorWindow/ModePicker.h"
#include "Quelm/EditorWindow/StatusBar.h"
#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/FakeClock.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <QToolBar>

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace quelm {

/// Keeps the application's threads from beginning anything for as long as it lives: an operation stays under way.
class BlockedThreads {
public:
    BlockedThreads() : count_(backgroundThreads().maxThreadCount()) {
        for (int thread = 0; thread < count_; ++thread)
            backgroundThreads().start([semaphores = semaphores_] {
                semaphores->started.release();
                semaphores->go.acquire();
            });
        semaphores_->started.acquire(count_);
    }
    ~BlockedThreads() { semaphores_->go.release(count_); }
    BlockedThreads(const BlockedThreads&) = delete;
    BlockedThreads& operator=(const BlockedThreads&) = delete;

private:
    struct Semaphores {
        QSemaphore started;
        QSemaphore go;
    };
    const int count_;
    const std::shared_ptr<Semaphores> semaphores_ = std::make_shared<Semaphores>();
};

/// A document window, driven with the events that a user causes.
class EditorViewTest : public testing::Test {
protected:
    EditorView& show(std::string_view text) {
        window = std::make_unique<EditorView>(documentWithText(text), nullptr, clock);
        window->showDocument();
        window->show();
        return *window;
    }
    /// The same in text mode, active, with the focus in the text.
    EditorView& showAsText(std::string_view text) {
        Preferences::setInitialMode(Preferences::InitialMode::text);
        show(text);
        activate();
        return *window;
    }
    void activate() {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    void replace(std::string_view text) { window->document().apply(JSONContent::fromText(TextRope(SharedText(text)))); }

    TreeView* tree() const { return window->treeView(); }
    JSONTextView* text() const { return window->textEditor(); }
    TextView& textView() const { return text()->textView(); }
    QString shownText() const { return textView().textStorage().string({0, textView().textStorage().length()}); }
    std::string savedText() const {
        return std::string(JSONDocument::fileContents(window->document().snapshot()).view());
    }

    QAbstractButton* segment(const QString& title) const { return buttonIn(window->modePicker(), title); }
    QAbstractButton* button(const QString& title) const { return buttonIn(window->toolBar(), title); }
    static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    bool finishOperation() {
        return QTest::qWaitFor([this] { return !window->model().isBusy(); });
    }

private:
    static QAbstractButton* buttonIn(const QWidget& bar, const QString& title) {
        for (QAbstractButton* button : bar.findChildren<QAbstractButton*>())
            if (button->text() == title)
                return button;
        return nullptr;
    }

protected:
    TemporaryPreferences preferences;
    FakeClock clock;
    std::unique_ptr<EditorView> window;
};

} // namespace quelm
