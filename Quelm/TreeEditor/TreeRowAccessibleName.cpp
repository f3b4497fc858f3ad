#include "Quelm/TreeEditor/TreeRowAccessibleName.h"

#include "JSONCore/TreeRow.h"
#include "Quelm/Foundation/VisibleText.h"
#include "Quelm/TreeEditor/KindPresentation.h"
#include "Quelm/TreeEditor/TreeRowContents.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace quelm {

namespace {

/// As many as a row takes of a value; nobody listens to more.
constexpr std::int64_t mostCharacters = 200;

struct RowNameText {
    Q_DECLARE_TR_FUNCTIONS(quelm::TreeRowAccessible)
};

QString label(NodeID id, NodeID parent, const JSONTree& tree) {
    if (parent == JSONTree::holder)
        return RowNameText::tr("raíz");
    if (tree.kind(parent) == NodeKind::array)
        return QLocale().toString(static_cast<qlonglong>(tree.indexInParent(id).value_or(0)));
    // Looked at where it is: a key may take megabytes.
    const std::string_view key = tree.key(id);
    return key.empty() ? RowNameText::tr("clave vacía") : visibleText(key, mostCharacters).text;
}

QString value(NodeID id, NodeKind kind, const JSONTree& tree) {
    if (isContainer(kind))
        return childCountText(kind, tree.children(id).size());
    const QString text = visibleText(TreeRow::previewText(tree.scalar(id)), mostCharacters + 1).text;
    return kind == NodeKind::string ? u'"' + text + u'"' : text;
}

} // namespace

QString treeRowName(NodeID id, const JSONTree& tree) {
    const NodeID parent = tree.parent(id).value_or(JSONTree::holder);
    const NodeKind kind = tree.kind(id);
    QStringList parts{label(id, parent, tree)};
    // Said before a value that may be long.
    if (tree.isObjectMember(id) && tree.keyOccurrences(parent, tree.key(id)) > 1)
        parts += RowNameText::tr("Clave duplicada");
    parts += kindName(kind);
    // The value of a null is its kind.
    if (kind != NodeKind::null)
        parts += value(id, kind, tree);
    return parts.join(QStringLiteral(", "));
}

QString treeRowLevel(std::int64_t depth) {
    return RowNameText::tr("nivel %1").arg(depth + 1);
}

} // namespace quelm
