#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

namespace quelm {
namespace {

constexpr auto pretty = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false);
constexpr auto compact = JSONStyle::compact();

/// Nothing is parsed or written on the main thread: where no other thread
/// begins anything, nothing comes of it.
class EventLoopTests : public EditorViewTest {
protected:
    /// Asks for something while no thread is free and looks at what has come of
    /// it; then lets it be done.
    void expectOtherThread(const std::function<void()>& request, const std::function<bool()>& isDone) const {
        {
            const BlockedThreads blocked;
            request();
            for (int turn = 0; turn < 10; ++turn)
                QCoreApplication::processEvents();
            EXPECT_FALSE(isDone());
        }
        EXPECT_TRUE(QTest::qWaitFor(isDone));
    }

    EditorModel& model() { return window->model(); }
    JSONDocument& document() { return window->document(); }
};

TEST_F(EventLoopTests, TheModeIsSwitchedOnAnotherThread) {
    show("[1, 2]");
    model().format(pretty);
    ASSERT_TRUE(finishOperation());
    expectOtherThread([this] { model().switchMode(EditorMode::text); },
                      [this] { return document().mode() == EditorMode::text; });
    QTest::keyClicks(textView().viewport(), QStringLiteral(" "));
    expectOtherThread([this] { model().switchMode(EditorMode::tree); },
                      [this] { return document().mode() == EditorMode::tree; });
}

TEST_F(EventLoopTests, TheDocumentIsFormattedOnAnotherThread) {
    showAsText("[1,2]");
    expectOtherThread([this] { model().format(pretty); }, [this] { return document().content().style == pretty; });
    EXPECT_EQ(shownText(), QStringLiteral("[\n  1,\n  2\n]\n"));
}

TEST_F(EventLoopTests, ACopyIsWrittenOnAnotherThread) {
    show("[1, 2]");
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("copia.json"));
    expectOtherThread(
        [&] { model().writeExport(std::make_shared<const ExportDocument>(document().snapshot(), compact), path); },
        [&] { return QFile::exists(path); });
}

TEST_F(EventLoopTests, WhatIsTypedIsValidatedOnAnotherThread) {
    showAsText("[1,2]");
    QTest::keyClicks(textView().viewport(), QStringLiteral("x"));
    expectOtherThread([this] { clock.advance(TextValidator::typingPause); },
                      [this] { return model().validator().state().isInvalid(); });
}

/// How long the event loop is kept from turning.
class EventLoopWatch {
public:
    EventLoopWatch() {
        QAbstractEventDispatcher* loop = QAbstractEventDispatcher::instance();
        QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, &context_, [this] { note(); });
        QObject::connect(loop, &QAbstractEventDispatcher::awake, &context_, [this] { turn_.start(); });
        turn_.start();
    }

    /// In milliseconds, since the last time.
    qint64 takeLongest() {
        note();
        return std::exchange(longest_, 0);
    }

private:
    void note() {
        longest_ = std::max(longest_, turn_.elapsed());
        turn_.start();
    }

    QObject context_;
    QElapsedTimer turn_;
    qint64 longest_ = 0;
};

/// Operations on a document that is large, and watched, where
/// QUELM_LARGE_DOCUMENTS asks for it: for a machine that does nothing else
/// meanwhile.
class WatchedEventLoopTests : public EventLoopTests {
protected:
    static bool isLarge() { return qEnvironmentVariableIsSet("QUELM_LARGE_DOCUMENTS"); }

    static std::string document() {
        const std::size_t size = isLarge() ? 100'000'000 : 100'000;
        std::string text = "[";
        while (text.size() < size)
            text += R"({"nombre":"Quelm","precios":[1,2.5,-3e7],"activo":true,"padre":null},)";
        return text + "{}]";
    }

    /// As QTest does it, but without sleeping beside the event loop.
    static bool waitFor(const std::function<bool()>& isDone) {
        QTimer often;
        often.start(std::chrono::milliseconds(5));
        const QDeadlineTimer deadline(std::chrono::minutes(1));
        while (!isDone() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isDone();
    }

    void perform(const char* name, const std::function<void()>& request, const std::function<bool()>& isDone) {
        QCoreApplication::processEvents();
        EventLoopWatch watch;
        request();
        ASSERT_TRUE(waitFor(isDone)) << name;
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        constexpr qint64 limit = 50;
        const qint64 longest = watch.takeLongest();
        if (isLarge()) {
            EXPECT_LE(longest, limit) << name;
        }
    }
    void operate(const char* name, const std::function<void()>& request) {
        perform(name, request, [this] { return !model().isBusy() && !model().isExporting(); });
        EXPECT_EQ(model().errorMessage(), std::nullopt) << name;
    }
    void format(const char* name, const JSONStyle& style) {
        operate(name, [&] { model().format(style); });
        operate("undoing a formatting", [this] { window->undoManager().undo(); });
        operate("redoing a formatting", [this] { window->undoManager().redo(); });
        EXPECT_EQ(EventLoopTests::document().content().style, style) << name;
    }
};

TEST_F(WatchedEventLoopTests, TheWindowAnswersWhateverTheDocumentGoesThrough) {
    const QTemporaryDir folder;
    show(document());
    const auto exportAs = [&](const JSONStyle& style) {
        model().writeExport(std::make_shared<const ExportDocument>(EventLoopTests::document().snapshot(), style),
                            folder.filePath(QStringLiteral("copia.json")));
    };

    operate("a pretty copy", [&] { exportAs(pretty); });
    format("formatting the tree", pretty);
    operate("switching to the text", [this] { model().switchMode(EditorMode::text); });
    operate("a compact copy", [&] { exportAs(compact); });
    format("formatting the text compactly", compact);
    format("formatting the text", pretty);
    perform(
        "validating what is typed",
        [this] {
            QTest::keyClicks(textView().viewport(), QStringLiteral(" "));
            clock.advance(TextValidator::typingPause);
        },
        [this] { return model().validator().state().isValid() && !model().validator().isPending(); });
    operate("switching to the tree", [this] { model().switchMode(EditorMode::tree); });
    perform("closing", [this] { window.reset(); }, [] { return true; });
}

} // namespace
} // namespace quelm
