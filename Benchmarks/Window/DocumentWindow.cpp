#include "Benchmarks/Window/DocumentWindow.h"

#include "Benchmarks/Harness/Timing.h"
#include "Quelm/Foundation/BackgroundThreads.h"

#include <QThreadPool>

namespace quelm::bench {

DocumentWindow::DocumentWindow(WatchedApplication& application, JSONContent content)
    : application_(application), view_(std::make_unique<EditorView>(std::make_shared<JSONDocument>())) {
    view_->document().apply(std::move(content));
    view_->showDocument();
    view_->show();
    view_->activateWindow();
    settle();
}

DocumentWindow::~DocumentWindow() = default;

void DocumentWindow::measure(OperationSamples& samples, const std::function<void()>& request,
                             const std::function<bool()>& isDone) {
    settle();
    application_.restart();
    samples.whole.add(secondsOf([&] {
        application_.call("request", request);
        while (!isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        settle();
    }));
    const WatchedApplication::Stretch& longest = application_.longest();
    if (samples.stretch.empty() || longest.seconds > samples.stretch.largest())
        samples.longest = longest.what;
    samples.stretch.add(longest.seconds);
}

void DocumentWindow::close(OperationSamples& samples) {
    measure(samples, [this] { view_.reset(); }, [] { return true; });
    backgroundThreads().waitForDone();
}

void DocumentWindow::settle() {
    // Painting is asked for by a posted event, and what runs at once afterwards may ask for more.
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace quelm::bench
