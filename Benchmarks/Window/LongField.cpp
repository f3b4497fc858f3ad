#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Window/WindowBenchmarks.h"
#include "JSONCore/JSONParser.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "TextCore/Check.h"

#include <string>

namespace quelm::bench {

namespace {

constexpr std::size_t stringSize = 10'000'000;

JSONTree treeWithLongString() {
    std::string text = R"({"before":[1,2,3],"text":")";
    while (text.size() < stringSize)
        text += "Una frase de unas pocas palabras, como las que se escriben. ";
    text += R"(","after":true})";
    auto tree = JSONParser::parse(TextRope(SharedText(text)));
    require(tree.has_value(), "the generated document is JSON");
    return *std::move(tree);
}

/// Where in the string: its name in results, and the part of the string before it.
struct Place {
    const char* name;
    double part;
};
constexpr Place places[] = {{"front", 0}, {"middle", 0.5}, {"end", 1}};

class LongField {
public:
    void run() {
        string_ = window_.tree().children(window_.tree().root())[1];
        for (const Place& place : places)
            editAt(place);
        report::latency(windowLabel("open-field", name), opening_);
        report::latency(windowLabel("escape-field", name), closing_);
        report::latency(windowLabel("return-in-field", name), committing_);
        report::latency(windowLabel("undo", name), undoing_);
    }

private:
    static constexpr std::string_view name = "string-10MB";

    TextView& field() {
        require(window_.view().inlineField() != nullptr, "a field is open");
        return window_.view().inlineField()->textView();
    }

    void open() {
        window_.goTo(string_);
        opening_.add(window_.secondsToFrame([this] { window_.press(Qt::Key_F2); }));
    }

    /// Where all was selected.
    void placeCaret(const Place& place) {
        const auto offset = static_cast<qint64>(place.part * static_cast<double>(field().textStorage().length()));
        field().setSelectedRange({offset, 0});
        field().scrollRangeToVisible({offset, 0});
        window_.settle();
    }

    void editAt(const Place& place) {
        constexpr int keys = 100;
        constexpr int rounds = 7;
        Samples typing;
        for (int round = 0; round < rounds; ++round) {
            open();
            placeCaret(place);
            for (int key = 0; key < keys / rounds; ++key)
                typing.add(fieldSeconds([this] { window_.press(Qt::Key_X, {}, QStringLiteral("x")); }));
            closing_.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Escape); }));

            open();
            placeCaret(place);
            window_.press(Qt::Key_X, {}, QStringLiteral("x"));
            committing_.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Return); }));
            require(window_.tree().scalar(string_).size() > stringSize, "the edited string is handed in whole");
            undoing_.add(window_.secondsToFrame([this] { window_.undoManager().undo(); }));
        }
        window_.undoManager().removeAllActions();
        report::latency(windowLabel("key-in-field", std::string(name) + "-" + place.name), typing);
    }

    /// The field paints itself; the rows below it need not.
    double fieldSeconds(const std::function<void()>& work) { return window_.secondsToFrame(work, *field().viewport()); }

    TreeWindow window_{treeWithLongString()};
    NodeID string_;
    Samples opening_;
    Samples closing_;
    Samples committing_;
    Samples undoing_;
};

} // namespace

void measureLongField() {
    LongField().run();
}

} // namespace quelm::bench
