#pragma once

#include <QStringView>

namespace quelm {

/// The places of a text where a row may end and the next begin without breaking a word (Unicode Standard Annex #14).
/// Only one at a time may exist, because what finds the places is costly to make and shared; for the main thread.
class LineBreaks {
public:
    /// `text` must outlive this.
    explicit LineBreaks(QStringView text);
    ~LineBreaks();
    LineBreaks(const LineBreaks&) = delete;
    LineBreaks& operator=(const LineBreaks&) = delete;

    /// The last such place at `index` or before it; 0 when there is none. Looks at the neighbourhood of `index` alone.
    qsizetype lastUpTo(qsizetype index) const;

private:
    const qsizetype length_;
};

} // namespace quelm
