#pragma once

#include <QAccessibleWidget>

namespace quelm {

class InlineField;

/// What assistive technology sees of the field in a row of a tree view: a part of that row, which has the text that is
/// edited. What is edited is said by the name of the text.
class TreeViewAccessibleField : public QAccessibleWidget {
public:
    explicit TreeViewAccessibleField(InlineField& field);

    /// The row, or the parent widget where there is none.
    QAccessibleInterface* parent() const override;
    QString text(QAccessible::Text kind) const override;
};

} // namespace quelm
