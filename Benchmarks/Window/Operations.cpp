#include "Benchmarks/Corpora.h"
#include "Benchmarks/Harness/ProcessMemory.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Window/DocumentWindow.h"
#include "Benchmarks/Window/WindowBenchmarks.h"
#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "TextCore/Check.h"

#include <QKeyEvent>
#include <QTemporaryDir>
#include <QThreadPool>

#include <cstdio>

namespace quelm::bench {

namespace {

constexpr std::size_t size = 100'000'000;
constexpr int rounds = 3;

constexpr std::string_view sentence = "Una frase de unas pocas palabras, como las que se escriben. ";

/// An array of one string.
SharedText longString() {
    std::string text = "[\"";
    while (text.size() < size)
        text += sentence;
    return SharedText(text + "\"]");
}

/// An array of strings in one line.
SharedText strings() {
    std::string text = "[";
    while (text.size() < size)
        text.append(text.size() > 1 ? ",\"" : "\"").append(sentence).append("\"");
    return SharedText(text + "]");
}

SharedText millionMembers() {
    std::string text = "{";
    for (int member = 0; member < 1'000'000; ++member)
        text.append(member > 0 ? "," : "").append("\"clave ").append(std::to_string(member)).append("\":1");
    return SharedText(text + "}");
}

/// The operations on one document, a few times over.
class Operations {
public:
    Operations(WatchedApplication& application, std::string name, const SharedText& text)
        : application_(application), name_(std::move(name)), fileSize_(static_cast<double>(text.view().size())) {
        require(folder_.isValid(), "there is a place for temporary files");
        processmemory::returnFreeMemory();
        processmemory::restartPeak();
        window_ = std::make_unique<DocumentWindow>(application, contentOf(text));
    }

    void run() {
        reportPeak("open");
        for (int round = 0; round < rounds; ++round)
            runRound();
        for (const auto& [operation, samples] : samples_)
            reportOperation(operation, samples);
        for (const auto& [operation, bytes] : peaks_)
            report::memory(windowLabel("peak/" + operation, name_), bytes / fileSize_, "x the file");
        OperationSamples closing;
        window_->close(closing);
        reportOperation("close", closing);
    }

private:
    static JSONContent contentOf(const SharedText& text) {
        auto content = JSONContent::fromData(text);
        require(content && content->tree, "the generated document is JSON");
        return *std::move(content);
    }

    EditorModel& model() { return window_->model(); }
    UndoManager& undoManager() { return window_->view().undoManager(); }

    void runRound() {
        switchTo("switch-to-text", EditorMode::text);
        typeAndValidate();
        // What was typed is parsed, and what was edited is written.
        switchTo("parse-to-tree", EditorMode::tree);
        editTree();
        switchTo("write-to-text", EditorMode::text);
        doExport("export-pretty", JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false));
        doExport("export-compact", JSONStyle::compact());
        format("format-pretty", JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false));
        format("format-compact", JSONStyle::compact());
        switchTo("switch-to-tree", EditorMode::tree);
        format("format-pretty-in-tree", JSONStyle::pretty(JSONStyle::Indent::fourSpaces, false));
        format("format-sorted-in-tree", JSONStyle::pretty(JSONStyle::Indent::fourSpaces, true));
        format("format-compact-in-tree", JSONStyle::compact());
        doExport("export-pretty-in-tree", JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false));
    }

    void measure(const std::string& operation, const std::function<void()>& request,
                 const std::function<bool()>& isDone) {
        // What the operation before has let go of is none of this one's.
        backgroundThreads().waitForDone();
        processmemory::returnFreeMemory();
        processmemory::restartPeak();
        window_->measure(samplesOf(operation), request, isDone);
        require(!model().errorMessage(), "the operation succeeds");
        notePeak(operation);
    }

    void switchTo(const std::string& operation, EditorMode mode) {
        measure(operation, [&] { model().switchMode(mode); }, [this] { return !model().isBusy(); });
        require(window_->view().document().mode() == mode, "the mode changes");
    }

    void format(const std::string& operation, const JSONStyle& style) {
        measure(operation, [&] { model().format(style); }, [this] { return !model().isBusy(); });
        require(undoManager().canUndo(), "a formatting can be undone");
        measure("undo-" + operation, [this] { undoManager().undo(); }, [] { return true; });
        measure("redo-" + operation, [this] { undoManager().redo(); }, [] { return true; });
        undoManager().removeAllActions();
    }

    /// A blank before everything, up to the result of the validation, and the same when it is taken back.
    void typeAndValidate() {
        TextView& text = window_->view().textEditor()->textView();
        text.setFocus();
        text.setSelectedRange({0, 0});
        const auto isValidated = [this] { return !model().validator().isPending(); };
        measure(
            "type-and-validate",
            [&] {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, {}, QStringLiteral(" "));
                QCoreApplication::sendEvent(&text, &press);
            },
            isValidated);
        require(undoManager().canUndo(), "the blank was typed");
        measure("undo-and-validate", [this] { undoManager().undo(); }, isValidated);
        require(model().validator().state().isValid(), "the text is valid");
    }

    /// So that the tree is the only truth.
    void editTree() {
        TreeEditor& tree = window_->view().treeEditor();
        tree.insert(true);
        tree.setEditing(std::nullopt);
        require(!window_->view().document().content().text, "an edit of the tree drops the text");
    }

    void doExport(const std::string& operation, const JSONStyle& style) {
        measure(
            operation,
            [&] {
                // Without the dialog that would ask for the file.
                auto document = std::make_shared<const ExportDocument>(window_->view().document().snapshot(), style);
                model().writeExport(std::move(document), folder_.filePath(QStringLiteral("copia.json")));
            },
            [this] { return !model().isExporting(); });
    }

    OperationSamples& samplesOf(const std::string& operation) {
        for (auto& [name, samples] : samples_)
            if (name == operation)
                return samples;
        return samples_.emplace_back(operation, OperationSamples()).second;
    }

    void notePeak(const std::string& operation) {
        const auto peak = static_cast<double>(processmemory::peakBytes().value_or(0));
        for (auto& [name, bytes] : peaks_)
            if (name == operation) {
                bytes = std::max(bytes, peak);
                return;
            }
        peaks_.emplace_back(operation, peak);
    }

    void reportPeak(const std::string& operation) {
        report::memory(windowLabel("peak/" + operation, name_),
                       static_cast<double>(processmemory::peakBytes().value_or(0)) / fileSize_, "x the file");
    }

    void reportOperation(const std::string& operation, const OperationSamples& samples) {
        report::latency(windowLabel(operation, name_), samples.stretch);
        report::latency(windowLabel(operation + "-whole", name_), samples.whole);
        if (samples.stretch.largest() > 0.05)
            std::fprintf(stderr, "%s: the longest was %s\n", windowLabel(operation, name_).c_str(),
                         samples.longest.c_str());
    }

    WatchedApplication& application_;
    std::string name_;
    double fileSize_;
    QTemporaryDir folder_;
    std::unique_ptr<DocumentWindow> window_;
    std::vector<std::pair<std::string, OperationSamples>> samples_;
    std::vector<std::pair<std::string, double>> peaks_;
};

} // namespace

void measureOperations(WatchedApplication& application, const Options& options) {
    const auto run = [&](const std::string& name, const std::function<SharedText()>& make) {
        if (name.find(options.only) == std::string::npos)
            return;
        Operations operations(application, name, make());
        operations.run();
    };
    const auto corpus = [&](Layout layout) {
        return [&options, layout] {
            auto text = Corpus(DocumentKind::records, size / 1'000'000, layout, options.cacheFolder).load();
            require(text.has_value(), "the generated document can be read");
            return *std::move(text);
        };
    };
    run("records-100MB", corpus(Layout::compact));
    run("records-indented-100MB", corpus(Layout::indented));
    run("strings-100MB", strings);
    run("long-string-100MB", longString);
    run("object-1M-members", millionMembers);
}

} // namespace quelm::bench
