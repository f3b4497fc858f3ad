#include "Benchmarks/Corpora.h"
#include "Benchmarks/Groups.h"
#include "Benchmarks/OffscreenApplication.h"
#include "Benchmarks/Text/TextBenchmarks.h"

#include <cstdio>

namespace quelm::bench {

namespace {

struct Size {
    const char* name;
    std::uint64_t bytes;
    /// Whether QPlainTextEdit gets through it, by lines and as one line.
    bool isForPeerInLines;
    bool isForPeerInOneLine;
};
constexpr Size sizes[] = {{"1KB", 1'000, true, true},
                          {"1MB", 1'000'000, true, true},
                          {"10MB", 10'000'000, true, false},
                          {"100MB", 100'000'000, false, false},
                          {"1GB", 1'000'000'000, false, false}};

SharedText generated(DocumentKind kind, std::uint64_t bytes, Layout layout) {
    TextBuilder builder(static_cast<std::size_t>(bytes) + (1 << 16));
    generate({.kind = kind, .size = bytes, .layout = layout},
             [&builder](std::string_view part) { builder.append(part); });
    return builder.finish();
}

void measure(const TextSubject& subject, bool isForPeer) {
    measureOpening(subject);
    const auto measureOne = [&subject](std::unique_ptr<Editor> editor, double mostSeconds) {
        editor->setText(TextRope(subject.text));
        editor->show();
        measureEditing(*editor, subject, mostSeconds);
    };
    measureOne(makeQuelmEditor(), 10);
    if (isForPeer)
        measureOne(makeQPlainTextEdit(), 2);
}

} // namespace

bool runTextGroup(const Options& options) {
    const OffscreenApplication application;

    for (const Size& size : sizes) {
        for (const Layout layout : {Layout::indented, Layout::compact}) {
            const bool isOneLine = layout == Layout::compact;
            const std::string label = std::string(isOneLine ? "oneline-" : "indented-") + size.name;
            if (label.find(options.only) == std::string::npos)
                continue;
            measure({label, generated(DocumentKind::records, size.bytes, layout)},
                    isOneLine ? size.isForPeerInOneLine : size.isForPeerInLines);
        }
    }
    // Characters of other scripts and emoji, which have to be shaped.
    for (const auto& [layout, label] :
         {std::pair(Layout::indented, "nonlatin-indented-10MB"), std::pair(Layout::compact, "nonlatin-oneline-10MB")})
        if (std::string_view(label).find(options.only) != std::string_view::npos)
            measure({label, generated(DocumentKind::nonlatin, 10'000'000, layout)}, false);
    if (std::string_view("coloured-line").find(options.only) != std::string_view::npos)
        measureColouredLine();
    return true;
}

} // namespace quelm::bench
