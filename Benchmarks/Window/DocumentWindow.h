#pragma once

#include "Benchmarks/Harness/Samples.h"
#include "Benchmarks/Window/WatchedApplication.h"
#include "Quelm/EditorWindow/EditorView.h"

#include <functional>
#include <memory>
#include <string>

namespace quelm::bench {

/// The samples of an operation in the background.
struct OperationSamples {
    /// From the request until everything is painted.
    Samples whole;
    /// The longest that the window did not answer meanwhile.
    Samples stretch;
    /// What that was, the last time that it was the longest of all.
    std::string longest;
};

/// A document in a window as the program shows it.
class DocumentWindow {
public:
    /// Shows the content.
    DocumentWindow(WatchedApplication& application, JSONContent content);
    ~DocumentWindow();
    DocumentWindow(const DocumentWindow&) = delete;
    DocumentWindow& operator=(const DocumentWindow&) = delete;

    EditorView& view() { return *view_; }
    EditorModel& model() { return view_->model(); }

    /// Does something and handles events until `isDone` and everything is painted.
    void measure(OperationSamples& samples, const std::function<void()>& request, const std::function<bool()>& isDone);

    /// Closes the window and gives all of it back, which is measured likewise.
    void close(OperationSamples& samples);

private:
    void settle();

    WatchedApplication& application_;
    std::unique_ptr<EditorView> view_;
};

} // namespace quelm::bench
