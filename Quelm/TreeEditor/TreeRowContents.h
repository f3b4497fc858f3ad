#pragma once

#include "JSONCore/TreeRow.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"

#include <QString>

#include <cstdint>

namespace quelm {

/// What a row shows, as texts of one line that are short enough to be measured and painted at any time, with their
/// widths.
struct TreeRowContents {
    enum class LabelKind : std::uint8_t { key, emptyKey, index, root };

    /// Looks at a bounded part of the row's key and value, however long they are. The row may be a preview.
    TreeRowContents(const TreeRow& row, const TreeRowStyle& style);

    /// The face in which the label is set.
    const TreeRowStyle::Face& labelFace(const TreeRowStyle& style) const;

    NodeID id;
    std::int64_t depth;
    NodeKind kind;
    bool isExpanded;
    bool isDuplicateKey;

    LabelKind labelKind;
    QString label;
    double labelWidth;
    /// The key is longer than `label`.
    bool isLabelCut = false;

    /// The number of children, or a scalar's text without quotation marks.
    QString value;
    /// With the quotation marks of a string.
    double valueWidth;
    /// `value` is not the scalar's text as it is but ends in a "…" of its own.
    bool isValueCut = false;
};

/// "1 clave", "12 claves", "1 elemento" or "12 elementos".
QString childCountText(NodeKind container, std::int64_t count);

} // namespace quelm
