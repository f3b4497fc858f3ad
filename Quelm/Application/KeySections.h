#pragma once

#include <QList>
#include <QString>

class QMenuBar;

namespace quelm {

/// Keys that belong together, as they are shown to the user.
struct KeySection {
    struct Entry {
        QString title;
        /// The names of the keys, the first one first.
        QString keys;
    };

    QString title;
    QList<Entry> entries;
};

/// Those of the items of each menu that have a key.
QList<KeySection> menuKeys(const QMenuBar& menuBar);

/// Those of the window, the tree, the text and the find bar that have no item in a menu.
QList<KeySection> editorKeys();

} // namespace quelm
