#pragma once

#include "Quelm/Foundation/BackgroundTask.h"
#include "TextCore/MatchReplacement.h"
#include "TextCore/SearchPattern.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <expected>
#include <optional>

namespace quelm {

class TextSearch;
class TextView;

/// Replaces what a search finds in the text of its view. All matches are replaced in one undo step, which is prepared
/// on another thread from a snapshot: the text can be edited meanwhile, and the preparation begins anew when it was. A
/// text that becomes read-only ends it.
/// For the main thread.
class TextReplacing : public QObject {
    Q_OBJECT

public:
    /// `search` must outlive this; `view`, the search's, is held weakly.
    TextReplacing(TextView& view, TextSearch& search, QObject* parent = nullptr);
    ~TextReplacing() override;

    /// Replaces the match that is selected, if one is, and goes on to the next. Nothing in a read-only text.
    void replaceSelectedMatch(const QString& replacement);

    /// Replaces all matches of what the search looks for at this moment. Nothing in a read-only text, or without a
    /// query.
    void replaceAll(const QString& replacement);
    bool isReplacingAll() const { return task_.isRunning(); }
    void cancel() { task_.cancel(); }

    /// The longest text that replacing may leave. More would hardly fit into memory together with its undo step.
    static constexpr qint64 longestResult = qint64{4} << 30; // bytes

Q_SIGNALS:
    void didStart();
    /// So many matches were replaced; 0 leaves the text untouched.
    void didReplaceAll(qint64 count);
    /// Nothing was replaced, because the text would have become too long.
    void didFindTooLong();
    /// Nothing was replaced, because the text became read-only.
    void didEndWithReadOnlyText();

private:
    using Result = std::expected<MatchReplacement, MatchReplacementFailure>;

    void start(const SearchPattern& pattern, const QByteArray& replacement);
    void finish(const Result& result);
    void noteReadOnly();

    QPointer<TextView> view_;
    TextSearch& search_;
    /// Cancelled before its thread is waited for.
    QThreadPool pool_;
    BackgroundTask task_;
};

} // namespace quelm
