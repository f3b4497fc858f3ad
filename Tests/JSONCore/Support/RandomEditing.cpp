#include "Tests/JSONCore/Support/RandomEditing.h"

#include "Tests/JSONCore/Support/RandomJSON.h"

#include <array>

namespace quelm::test {

namespace {

NodeID anyNode(const EditedDocument& document, Random& random) {
    return NodeID{static_cast<std::int32_t>(1 + random.below(document.model().storedNodeCount() - 1))};
}

NodeKind scalarKind(Random& random) {
    return random.oneOf(std::array{NodeKind::string, NodeKind::number, NodeKind::bool_, NodeKind::null});
}

std::string scalarText(NodeKind kind, Random& random) {
    switch (kind) {
    case NodeKind::string:
        return randomText(random);
    case NodeKind::number:
        return randomNumber(random);
    case NodeKind::bool_:
        return random.oneIn(2) ? "true" : "false";
    default:
        return "";
    }
}

void commitValue(EditedDocument& document, NodeID id, Random& random) {
    if (isContainer(document.model()[id].kind))
        return;
    const NodeKind kind = random.oneIn(2) ? scalarKind(random) : document.model()[id].kind;
    document.applyThereAndBack(TreeEdit::setValue(id, kind, scalarText(kind, random)));
}

/// A few edits that fit one after another, found out on a copy of the model.
std::vector<TreeEdit> fittingEdits(const EditedDocument& document, Random& random) {
    NaiveTree trial = document.model();
    std::vector<TreeEdit> edits;
    std::vector<NodeID> removed;
    for (std::int64_t i = 1 + random.below(5); i > 0; --i) {
        const NodeID id = !removed.empty() && random.oneIn(2) ? random.oneOf(removed) : randomNode(document, random);
        const NaiveNode& node = trial[id];
        std::optional<TreeEdit> edit;
        if (random.oneIn(3)) {
            edit = TreeEdit::setKey(id, randomKey(random));
        } else if (!isContainer(node.kind) && random.oneIn(3)) {
            const NodeKind kind = scalarKind(random);
            edit = TreeEdit::setValue(id, kind, scalarText(kind, random));
        } else if (node.parent && *node.parent != JSONTree::holder) {
            edit = TreeEdit::remove(id);
            removed.push_back(id);
        } else if (!node.parent) {
            const NodeID parent = randomNode(document, random);
            if (isContainer(trial[parent].kind) && !trial.isInSubtree(parent, id))
                edit = TreeEdit::insert(id, parent,
                                        random.below(static_cast<std::int64_t>(trial[parent].children.size()) + 1));
        }
        if (edit) {
            trial.apply(*edit);
            edits.push_back(*edit);
        }
    }
    return edits;
}

/// A container that has a row, or the parent of a node.
NodeID randomContainer(const EditedDocument& document, Random& random) {
    NodeID id = randomNode(document, random);
    if (!random.oneIn(3))
        id = document.outline().rowID(random.below(document.outline().rowCount()));
    if (isContainer(document.model()[id].kind))
        return id;
    const NodeID parent = document.model()[id].parent.value_or(id);
    return parent == JSONTree::holder ? id : parent;
}

void changeView(EditedDocument& document, Random& random) {
    const NodeID id = randomContainer(document, random);
    switch (random.below(8)) {
    case 0:
    case 1:
        document.reveal(randomNode(document, random));
        break;
    case 2:
        document.setExpanded(id, random.oneIn(2), true);
        break;
    case 3:
        if (random.oneIn(8))
            document.rebuild();
        break;
    default:
        document.setExpanded(id, !random.oneIn(3), false);
    }
}

void edit(EditedDocument& document, Random& random, std::int64_t largestCopy) {
    const NodeID id = randomNode(document, random);
    const bool isTop = id == document.model().root();
    switch (random.below(12)) {
    case 0:
        document.insert(id, random.oneIn(2));
        break;
    case 1:
        document.paste(randomJSON(random, {1 + random.below(20), 6, random.oneIn(2)}), id, random.oneIn(2));
        break;
    case 2:
        if (document.model().subtreeSize(id) <= largestCopy)
            document.duplicate(id);
        break;
    case 3:
        if (!isTop || random.oneIn(30))
            document.changeKind(id, random.oneOf(allNodeKinds));
        break;
    case 4:
        document.move(id, random.oneIn(2) ? 1 : -1);
        break;
    case 5:
        document.move(id, random.below(100) - 50);
        break;
    case 6:
        if (document.model().subtreeSize(id) * 4 < document.model().nodeCount() || random.oneIn(10))
            document.remove(id);
        break;
    case 7:
    case 8:
        document.apply(TreeEdit::setKey(id, randomKey(random)));
        break;
    case 9:
        document.applyThereAndBack(TreeEdit::setKey(id, randomKey(random)));
        break;
    case 10:
        document.applyList(fittingEdits(document, random));
        break;
    default:
        commitValue(document, id, random);
    }
}

} // namespace

NodeID randomNode(const EditedDocument& document, Random& random) {
    const NaiveTree& model = document.model();
    for (int attempt = 0; attempt < 50 && !random.oneIn(60); ++attempt) {
        const NodeID id = anyNode(document, random);
        if (model.isInSubtree(id, model.root()))
            return id;
    }
    return anyNode(document, random);
}

void takeRandomStep(EditedDocument& document, Random& random, std::int64_t largestCopy) {
    switch (random.below(16)) {
    case 0:
    case 1:
    case 2:
        changeView(document, random);
        break;
    case 3:
    case 4:
        for (std::int64_t i = 1 + random.below(4); i > 0; --i)
            document.undo();
        break;
    case 5:
        for (std::int64_t i = 1 + random.below(4); i > 0; --i)
            document.redo();
        break;
    case 6:
        if (random.oneIn(4))
            document.passTreeOn();
        else
            document.addNode(NodeKind::array, randomKey(random), "");
        break;
    default:
        edit(document, random, largestCopy);
    }
}

} // namespace quelm::test
