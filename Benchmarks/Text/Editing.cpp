#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/Text/TextBenchmarks.h"

#include <QClipboard>
#include <QGuiApplication>

#include <functional>
#include <random>

namespace quelm::bench {

namespace {

/// Where in the text: its name in results, and the part of the text before it.
struct Place {
    const char* name;
    double part;
};
constexpr Place places[] = {{"start", 0}, {"middle", 0.5}, {"end", 1}};

class EditingSession {
public:
    EditingSession(Editor& editor, const TextSubject& subject, double mostSeconds)
        : editor_(editor), subject_(subject), mostSeconds_(mostSeconds) {}

    void run() {
        for (const Place& place : places) {
            goTo(place);
            measure("key", place.name, 200, [this] { editor_.press(Qt::Key_X, {}, QStringLiteral("x")); });
            measure("backspace", place.name, 100, [this] { editor_.press(Qt::Key_Backspace); });
            measure("undo", place.name, 1, [this] { editor_.press(Qt::Key_Z, Qt::ControlModifier); });
        }
        goTo(places[1]);
        measure(
            "undo-each", "middle", 50, [this] { editor_.press(Qt::Key_Z, Qt::ControlModifier); },
            [this] {
                // A key after a move is a step of its own.
                editor_.press(Qt::Key_Left);
                editor_.press(Qt::Key_X, {}, QStringLiteral("x"));
            });
        goTo(places[0]);
        measure("page-down", {}, 100, [this] { editor_.press(Qt::Key_PageDown); });
        measure(
            "go-to-end", {}, 50, [this] { editor_.press(Qt::Key_End, Qt::ControlModifier); },
            [this] { editor_.press(Qt::Key_Home, Qt::ControlModifier); });
        goTo(places[1]);
        std::mt19937 random(1);
        measure("click", {}, 100, [&] {
            editor_.click({100 + static_cast<int>(random() % 1200), 40 + static_cast<int>(random() % 800)});
        });
        measurePaste();
        measure(
            "select-all-and-copy", {}, 5,
            [this] {
                editor_.press(Qt::Key_A, Qt::ControlModifier);
                editor_.press(Qt::Key_C, Qt::ControlModifier);
            },
            [this] { editor_.press(Qt::Key_Home, Qt::ControlModifier); });
        QGuiApplication::clipboard()->clear();
    }

private:
    void goTo(const Place& place) {
        editor_.placeCaret(static_cast<qint64>(place.part * static_cast<double>(editor_.length())));
    }

    void measurePaste() {
        QString pasted;
        while (pasted.size() < 1'000'000)
            pasted += QStringLiteral("{\"clave\": \"valor\", \"n\": 12345},\n");
        QGuiApplication::clipboard()->setText(pasted);
        goTo(places[1]);
        measure(
            "paste-1MB", "middle", 10, [this] { editor_.press(Qt::Key_V, Qt::ControlModifier); }, {},
            [this] { editor_.press(Qt::Key_Z, Qt::ControlModifier); });
    }

    void measure(const std::string& operation, const std::string& place, int rounds, const std::function<void()>& work,
                 const std::function<void()>& before = {}, const std::function<void()>& after = {}) {
        Samples samples;
        double total = 0;
        for (int round = 0; round < rounds && total < mostSeconds_; ++round) {
            if (before)
                before();
            const double seconds = secondsOf(work);
            if (after)
                after();
            samples.add(seconds);
            total += seconds;
        }
        std::string label = "text/" + operation + "/" + subject_.name;
        if (!place.empty())
            label += "-" + place;
        if (editor_.name() != "quelm")
            label += " " + editor_.name();
        report::latency(label, samples);
    }

    Editor& editor_;
    const TextSubject& subject_;
    double mostSeconds_;
};

} // namespace

void measureEditing(Editor& editor, const TextSubject& subject, double mostSeconds) {
    EditingSession(editor, subject, mostSeconds).run();
}

namespace {

/// The most units that are coloured, less one.
constexpr std::size_t colouredLength = 2'999'999;

/// One line of records, of that length.
std::string lineOfRecords() {
    std::string text = "[";
    for (int record = 0; text.size() < colouredLength; ++record)
        text += R"({"id":)" + std::to_string(record) + R"(,"name":"record number )" + std::to_string(record * 7) +
                R"(","active":true,"parent":null},)";
    text.resize(colouredLength);
    return text;
}

/// One line in which every unit is a token.
std::string lineOfOnes() {
    std::string text = "[";
    while (text.size() < colouredLength)
        text += "1,";
    text.resize(colouredLength);
    return text;
}

/// A key that is typed in the line and taken back, which is measured for itself where it has a name.
struct ColouredKey {
    const char* name;
    const char* nameOfRemoval;
    int key;
    QString typed;
};

void measureKeys(const TextSubject& subject) {
    const ColouredKey keys[] = {{"key", nullptr, Qt::Key_X, QStringLiteral("x")},
                                {"quote", "backspace-of-quote", Qt::Key_QuoteDbl, QStringLiteral("\"")}};
    const auto editor = makeQuelmEditor();
    for (const Place& place : places) {
        for (const ColouredKey& key : keys) {
            editor->setText(TextRope(subject.text));
            editor->show();
            editor->placeCaret(static_cast<qint64>(place.part * static_cast<double>(colouredLength)));
            Samples typing;
            Samples removing;
            // Each key is taken back, so that the line stays as long.
            for (int round = 0; round < 100; ++round) {
                typing.add(secondsOf([&] { editor->press(key.key, {}, key.typed); }));
                removing.add(secondsOf([&] { editor->press(Qt::Key_Backspace); }));
            }
            const std::string where = "/" + subject.name + "-" + place.name;
            report::latency("text/" + std::string(key.name) + where, typing);
            if (key.nameOfRemoval)
                report::latency("text/" + std::string(key.nameOfRemoval) + where, removing);
        }
    }
}

} // namespace

void measureColouredLine() {
    measureKeys({"coloured-line-2999999", SharedText(lineOfRecords())});
    measureKeys({"coloured-ones-2999999", SharedText(lineOfOnes())});
}

} // namespace quelm::bench
