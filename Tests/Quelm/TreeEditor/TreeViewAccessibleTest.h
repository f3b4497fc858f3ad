#pragma once

#include "Quelm/TreeEditor/TreeRowAccessible.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TreeWindow.h"

#include <QAccessible>

namespace quelm {

/// A tree view as assistive technology asks for it.
class TreeViewAccessibleTest : public TreeWindow {
protected:
    QAccessibleInterface& whole() const { return *QAccessible::queryAccessibleInterface(view); }
    TreeViewAccessible& tree() const { return dynamic_cast<TreeViewAccessible&>(whole()); }
    QAccessibleTableInterface& table() const { return *whole().tableInterface(); }

    QAccessibleInterface& row(int index) const { return *whole().child(index); }
    QAccessible::State state(int index) const { return row(index).state(); }
    QAccessibleActionInterface& actions(int index) const { return *row(index).actionInterface(); }

    QString name(int index) const { return row(index).text(QAccessible::Name); }
    QStringList names() const {
        QStringList names;
        for (int index = 0; index < whole().childCount(); ++index)
            names += name(index);
        return names;
    }

    QPoint global(QPoint place) const { return view->viewport()->mapToGlobal(place); }
};

} // namespace quelm
