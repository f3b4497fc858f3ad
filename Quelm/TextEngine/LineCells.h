#pragma once

#include "Quelm/TextEngine/TextStorage.h"

namespace quelm {

/// The cells of a line, as `TextSummary::cells` counts them. Units and cells count from the line's start; O(log n).
class LineCells {
public:
    /// `units` of the storage are the line. The storage must outlive this.
    LineCells(const TextStorage& storage, TextRange units)
        : storage_(storage), units_(units), start_(storage.text().summaryBeforeUTF16(units.location).cells()),
          count_(storage.text().summaryBeforeUTF16(units.end()).cells() - start_) {}

    qint64 count() const { return count_; }
    qint64 before(qint64 unit) const {
        return storage_.text().summaryBeforeUTF16(units_.location + unit).cells() - start_;
    }
    /// The last place between characters with no more than `cell` cells before it.
    qint64 unitOf(qint64 cell) const {
        if (cell <= 0 || cell >= count_)
            return cell <= 0 ? 0 : units_.length;
        return storage_.text().summaryBeforeCell(start_ + cell).utf16 - units_.location;
    }

private:
    const TextStorage& storage_;
    const TextRange units_;
    const qint64 start_;
    const qint64 count_;
};

} // namespace quelm
