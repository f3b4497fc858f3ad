#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quelm {

class TreeEditor;

/// Finds the row of the key that the user begins to type in the tree, whatever the case of its letters. Letters typed
/// one soon after the other are one text; the same letter again and again goes from one key with it to the next. Only
/// rows that are there take part, not what is in collapsed containers.
///
/// The search goes down from the selection, on from the first row after the last one, and looks at the beginning of
/// each key only. Millions of rows are searched in slices, between which the event loop runs.
class TreeTypeAhead : public QObject {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::milliseconds;

    /// `editor` must outlive the search.
    explicit TreeTypeAhead(const TreeEditor& editor, QObject* parent = nullptr);

    /// Longer than this after the last letter, a text is a new one. One second at first.
    void setInterval(Milliseconds interval) { interval_ = interval; }

    /// Takes what the user typed at a moment, told by any clock that goes evenly, with a row selected or none. There
    /// must be rows. One slice is searched at once, and may find the row before this returns.
    void type(const QString& text, std::optional<std::int64_t> selectedRow, Milliseconds now);

    /// Ends the search and forgets the text: the user did something else, or the rows are others.
    void cancel();

    bool isSearching() const { return remainingRows_ > 0; }

Q_SIGNALS:
    void found(std::int64_t row);

private:
    void begin(std::int64_t row);
    void searchSlice();
    bool isMatch(std::int64_t row) const;
    bool startsWithPrefix(std::string_view key) const;

    const TreeEditor& editor_;
    Milliseconds interval_{1000};
    QString typed_;
    Milliseconds lastTyped_{0};

    QString prefix_;
    /// The first letter of the prefix in lower case where it is one of ASCII, else 0: most keys are told by it.
    char firstLetter_ = 0;
    std::int64_t nextRow_ = 0;
    std::int64_t remainingRows_ = 0;
    QTimer timer_;
};

} // namespace quelm
