#include "Quelm/TreeEditor/TreeTypeAhead.h"

#include "Quelm/TreeEditor/TreeEditor.h"
#include "TextCore/Check.h"

#include <algorithm>

namespace quelm {

namespace {

/// What takes a few milliseconds.
constexpr std::int64_t rowsPerSlice = 16'384;

/// More than a character can take that, composed, is one UTF-16 unit.
constexpr qsizetype mostBytesPerUnit = 24;

bool isASCII(char letter) {
    return static_cast<unsigned char>(letter) < 0x80;
}

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isOneLetterRepeated(const QString& text) {
    const QList<uint> letters = text.toCaseFolded().toUcs4();
    return std::ranges::all_of(letters, [&](uint letter) { return letter == letters.front(); });
}

QString firstLetter(const QString& text) {
    return text.left(text.front().isHighSurrogate() ? 2 : 1);
}

} // namespace

TreeTypeAhead::TreeTypeAhead(const TreeEditor& editor, QObject* parent) : QObject(parent), editor_(editor) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &TreeTypeAhead::searchSlice);
}

void TreeTypeAhead::type(const QString& text, std::optional<std::int64_t> selectedRow, Milliseconds now) {
    require(!text.isEmpty() && editor_.outline().rowCount() > 0, "something is typed and there are rows");
    const bool isNew = typed_.isEmpty() || now - lastTyped_ > interval_;
    lastTyped_ = now;
    typed_ = isNew ? text : typed_ + text;
    const bool isRepeated = isOneLetterRepeated(typed_);
    const QString prefix = isRepeated ? firstLetter(typed_) : typed_;
    prefix_ = prefix.normalized(QString::NormalizationForm_C);
    const char16_t first = prefix_.front().unicode();
    firstLetter_ = first < 0x80 ? lowerCase(static_cast<char>(first)) : '\0';

    // What a longer text finds lies behind what is already known not to begin like the shorter one.
    if (isNew || !isSearching()) {
        const bool goesOn = isNew || isRepeated;
        begin(selectedRow ? *selectedRow + (goesOn ? 1 : 0) : 0);
    }
    searchSlice();
}

void TreeTypeAhead::cancel() {
    typed_.clear();
    remainingRows_ = 0;
    timer_.stop();
}

void TreeTypeAhead::begin(std::int64_t row) {
    remainingRows_ = editor_.outline().rowCount();
    nextRow_ = row % remainingRows_;
}

void TreeTypeAhead::searchSlice() {
    const std::int64_t rows = editor_.outline().rowCount();
    for (std::int64_t left = std::min(rowsPerSlice, remainingRows_); left > 0; --left) {
        const std::int64_t row = nextRow_;
        nextRow_ = row + 1 == rows ? 0 : row + 1;
        --remainingRows_;
        if (isMatch(row)) {
            remainingRows_ = 0;
            timer_.stop();
            Q_EMIT found(row);
            return;
        }
    }
    if (remainingRows_ > 0)
        timer_.start(0);
}

bool TreeTypeAhead::isMatch(std::int64_t row) const {
    const NodeID id = editor_.outline().rowID(row);
    const JSONTree* tree = editor_.tree();
    return tree && startsWithPrefix(tree->key(id)) && tree->isObjectMember(id);
}

bool TreeTypeAhead::startsWithPrefix(std::string_view key) const {
    if (key.empty())
        return false;
    if (firstLetter_ != '\0' && isASCII(key.front()) && lowerCase(key.front()) != firstLetter_)
        return false;
    const qsizetype bytes = std::min(static_cast<qsizetype>(key.size()), prefix_.size() * mostBytesPerUnit);
    const QString beginning = QString::fromUtf8(key.data(), bytes).normalized(QString::NormalizationForm_C);
    return beginning.startsWith(prefix_, Qt::CaseInsensitive);
}

} // namespace quelm
