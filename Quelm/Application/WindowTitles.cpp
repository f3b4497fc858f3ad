#include "Quelm/Application/WindowTitles.h"

#include "Quelm/Application/FileTitles.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/VisibleText.h"

namespace quelm {

namespace {

/// Of each window the folder that its title needs; empty for those that need none, as without a file.
QStringList foldersOf(const std::vector<EditorView*>& windows) {
    QStringList paths;
    for (const EditorView* window : windows)
        paths += window->document().configuration().fileLocation().value_or(QString());
    QStringList folders = tellingFolders(paths);
    for (qsizetype index = 0; index < paths.size(); ++index)
        if (paths[index].isEmpty())
            folders[index].clear();
    return folders;
}

} // namespace

void tellApart(const std::vector<EditorView*>& windows) {
    const QStringList folders = foldersOf(windows);
    for (std::size_t index = 0; index < windows.size(); ++index)
        windows[index]->setTitleFolder(folders[static_cast<qsizetype>(index)]);
}

QStringList documentTitles(const std::vector<EditorView*>& windows) {
    const QStringList folders = foldersOf(windows);
    QStringList titles;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const QString name = visibleCharacters(windows[index]->document().configuration().displayName());
        const QString folder = visibleCharacters(folders[static_cast<qsizetype>(index)]);
        titles += folder.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, folder);
    }
    return titles;
}

} // namespace quelm
