#include "Quelm/TextEditor/TextReplacing.h"

#include "Quelm/TextEditor/SearchRanges.h"
#include "Quelm/TextEditor/TextSearch.h"
#include "Quelm/TextEngine/TextView.h"

#include <algorithm>
#include <string_view>

namespace quelm {

namespace {

TextRope ropeOf(const QString& text) {
    return TextRope::repairing(std::u16string_view(QStringView(text).utf16(), std::size_t(text.size())));
}

/// Leaves the caret in its line and column, and the viewport where it is, however much of the text changes within lines
/// while it lives. Where line feeds go with what is replaced, a line that is gone is the last one.
class PlaceKeeper {
public:
    explicit PlaceKeeper(TextView& view)
        : view_(view), line_(view.textStorage().lineAt(view.selectedRange().end())),
          column_(view.selectedRange().end() - view.textStorage().lineStart(line_)),
          top_(view.verticalAxis().position()), left_(view.horizontalAxis().position()) {}
    PlaceKeeper(const PlaceKeeper&) = delete;
    PlaceKeeper& operator=(const PlaceKeeper&) = delete;
    ~PlaceKeeper() {
        const TextStorage& storage = view_.textStorage();
        const TextRange line = storage.lineContents(std::min(line_, storage.lineCount() - 1));
        view_.setSelectedRange({line.location + std::min(column_, line.length), 0});
        view_.verticalAxis().setPosition(top_);
        view_.horizontalAxis().setPosition(left_);
    }

private:
    TextView& view_;
    qint64 line_;
    qint64 column_;
    std::int64_t top_;
    std::int64_t left_;
};

} // namespace

TextReplacing::TextReplacing(TextView& view, TextSearch& search, QObject* parent)
    : QObject(parent), view_(&view), search_(search) {
    pool_.setMaxThreadCount(1);
    connect(&view, &TextView::readOnlyDidChange, this, &TextReplacing::noteReadOnly);
}

TextReplacing::~TextReplacing() = default;

void TextReplacing::replaceSelectedMatch(const QString& replacement) {
    if (!view_ || view_->isReadOnly())
        return;
    view_->finishComposing();
    if (search_.isSelectionMatch())
        view_->editing().replace(view_->selectedRange(), ropeOf(replacement), tr("Reemplazar"));
    search_.findNext();
}

void TextReplacing::replaceAll(const QString& replacement) {
    const auto& pattern = search_.pattern();
    if (!view_ || view_->isReadOnly() || !pattern)
        return;
    search_.stopFinding();
    const SharedText bytes = ropeOf(replacement).contiguous();
    start(*pattern, QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    Q_EMIT didStart();
}

void TextReplacing::start(const SearchPattern& pattern, const QByteArray& replacement) {
    const TextRope text = view_->textStorage().text();
    const auto work = [text, pattern, replacement](const std::stop_token& stop) {
        return replacingMatches(text, pattern, std::string_view(replacement.data(), std::size_t(replacement.size())),
                                longestResult, stop);
    };
    task_ = startInBackground(pool_, this, work, [this, text, pattern, replacement](const Result& result) {
        if (!view_)
            return;
        view_->finishComposing();
        // Whoever heard of that edit may have made the text read-only.
        if (view_->isReadOnly())
            Q_EMIT didEndWithReadOnlyText();
        else if (view_->textStorage().text().isSameValue(text))
            finish(result);
        else
            start(pattern, replacement);
    });
}

void TextReplacing::finish(const Result& result) {
    if (!result) {
        Q_EMIT didFindTooLong();
        return;
    }
    if (result->count > 0) {
        const PlaceKeeper keeper(*view_);
        const TextRange range = textRange(view_->textStorage().text(), result->range);
        view_->editing().replace(range, result->replacement, tr("Reemplazar"));
    }
    Q_EMIT didReplaceAll(result->count);
}

/// What has the text in hand may change it or not: nobody waits to see what would be replaced then.
void TextReplacing::noteReadOnly() {
    if (!view_ || !view_->isReadOnly() || !isReplacingAll())
        return;
    cancel();
    Q_EMIT didEndWithReadOnlyText();
}

} // namespace quelm
