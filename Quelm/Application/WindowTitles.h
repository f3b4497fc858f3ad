#pragma once

#include <QStringList>

#include <vector>

namespace quelm {

class EditorView;

/// Lets the titles of windows whose files have the same name tell their folders.
void tellApart(const std::vector<EditorView*>& windows);

/// The names of the windows' documents, in their order, with the folder where files have the same name.
QStringList documentTitles(const std::vector<EditorView*>& windows);

} // namespace quelm
