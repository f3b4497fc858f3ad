#pragma once

#include "JSONCore/JSONParser.h"
#include "Tests/Quelm/Support/EditedTreeTest.h"
#include "Tests/Quelm/Support/NaiveDocument.h"

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>
#include <utility>

namespace quelm {

/// An editor whose operations are made on a plain model of the document, its steps, the rows, the selection and the
/// field as well, with whatever they need to know chosen at random.
class MirroredTreeTest : public EditedTreeTest {
protected:
    explicit MirroredTreeTest(unsigned seed) : random(seed) {}

    using Place = NaiveDocument::Place;

    void start(std::string_view text) {
        open(text);
        model.emplace(NaiveValue::of(tree(), node({})));
        expanded = {node({})};
        selection = node({});
        findPlaces();
    }

    std::int64_t below(std::int64_t bound) {
        return static_cast<std::int64_t>(random() % static_cast<unsigned>(bound));
    }
    bool oneIn(std::int64_t count) { return below(count) == 0; }
    template <class Array>
    auto oneOf(const Array& array) {
        return array[static_cast<std::size_t>(below(std::ssize(array)))];
    }

    // The model's side.

    void findPlaces() {
        places.clear();
        nodes.clear();
        findPlaces(node({}), {});
    }
    void findPlaces(NodeID id, const Path& path) {
        places[id] = path;
        nodes.push_back(id);
        Path childPath = path;
        childPath.push_back(0);
        for (NodeID child : tree().children(id)) {
            findPlaces(child, childPath);
            ++childPath.back();
        }
    }
    Place placeOf(std::optional<NodeID> id) const {
        const auto found = id ? places.find(*id) : places.end();
        return found == places.end() ? std::nullopt : std::optional(found->second);
    }

    void reveal(const Path& path) {
        for (Path ancestor = path; !ancestor.empty();) {
            ancestor.pop_back();
            expanded.insert(node(ancestor));
        }
    }
    void setExpanded(NodeID id, bool isExpanded, bool recursive) {
        if (!isContainer(tree().kind(id)))
            return;
        if (isExpanded)
            expanded.insert(id);
        else
            expanded.erase(id);
        if (!recursive)
            return;
        for (NodeID child : tree().children(id))
            setExpanded(child, isExpanded, true);
    }
    void addRows(NodeID id, std::int64_t depth, std::vector<std::pair<NodeID, std::int64_t>>& rows) const {
        rows.emplace_back(id, depth);
        if (!expanded.contains(id))
            return;
        for (NodeID child : tree().children(id))
            addRows(child, depth + 1, rows);
    }
    std::vector<std::pair<NodeID, std::int64_t>> expectedRows() const {
        std::vector<std::pair<NodeID, std::int64_t>> rows;
        addRows(node({}), 0, rows);
        return rows;
    }

    /// The editor has changed the tree as the model did.
    void noteEdit(const Place& focus, NodeID rootBefore) {
        findPlaces();
        if (node({}) != rootBefore)
            expanded.insert(node({}));
        if (focus) {
            reveal(*focus);
            selection = node(*focus);
        }
        if (editing && !places.contains(editing->id))
            editing.reset();
    }
    void noteReload() {
        findPlaces();
        editing.reset();
        expanded.insert(node({}));
        const auto rows = expectedRows();
        const auto isSelected = [this](const auto& row) { return row.first == selection; };
        if (!selection || std::ranges::none_of(rows, isSelected))
            selection = node({});
    }

    // One operation on both sides.

    void selectAtRandom() {
        selection = oneOf(nodes);
        if (oneIn(12))
            selection = NodeID{static_cast<std::int32_t>(below(tree().storedNodeCount() + 4) - 2)};
        if (oneIn(40))
            selection.reset();
        editor->setSelection(selection);
    }
    /// An operation on the selection: `onModel` returns what is selected afterwards.
    template <class OnEditor, class OnModel>
    Place edit(OnEditor onEditor, OnModel onModel) {
        const NodeID rootBefore = node({});
        const Place place = placeOf(selection);
        const Place focus = place ? onModel(*place) : std::nullopt;
        onEditor();
        if (focus)
            noteEdit(focus, rootBefore);
        return focus;
    }

    void insert() {
        const bool asChild = oneIn(2);
        const Place focus =
            edit([&] { editor->insert(asChild); }, [&](const Path& at) { return model->insert(at, asChild); });
        if (!focus)
            return;
        const bool isMember = tree().isObjectMember(node(*focus));
        editing = Editing{node(*focus), isMember ? Field::key : Field::value};
    }
    void duplicate() {
        edit([&] { editor->duplicate(); }, [&](const Path& at) { return model->duplicate(at); });
    }
    void move() {
        const std::int64_t offset = oneIn(4) ? below(7) - 3 : 2 * below(2) - 1;
        edit([&] { editor->move(offset); }, [&](const Path& at) { return model->move(at, offset); });
    }
    void remove() {
        edit([&] { editor->remove(); }, [&](const Path& at) { return model->remove(at); });
    }
    void changeType() {
        const NodeID id = oneIn(20) ? NodeID{static_cast<std::int32_t>(below(tree().storedNodeCount()))} : oneOf(nodes);
        const NodeKind kind = oneOf(allNodeKinds);
        const NodeID rootBefore = node({});
        const Place place = placeOf(id);
        const Place focus = place ? model->changeType(*place, kind) : std::nullopt;
        editor->changeType(id, kind);
        if (focus)
            noteEdit(focus, rootBefore);
    }
    void paste() {
        static constexpr std::array texts{
            "7", R"({"a":1,"b":[true,null]})", R"([1,["t"],{}])", R"({"a":{"a":[]},"a":0})", "[", ""};
        const std::string text = oneOf(texts);
        pasteboard.put(text);
        const auto value = JSONParser::parse(TextRope(SharedText(text)));
        if (!value && placeOf(selection))
            ++expectedErrors;
        edit([&] { editor->pasteJSON(); },
             [&](const Path& at) {
                 return value ? model->paste(NaiveValue::of(*value, value->root()), at) : std::nullopt;
             });
    }

    void activate() {
        const std::array<std::optional<Field>, 3> fields{std::nullopt, Field::key, Field::value};
        const std::optional<Field> asked = oneOf(fields);
        const Place place = placeOf(selection);
        const NodeKind kind = place ? model->at(*place).kind : NodeKind::null;
        const bool hasValue = kind == NodeKind::string || kind == NodeKind::number || kind == NodeKind::bool_;
        const Field field = asked.value_or(hasValue ? Field::value : Field::key);
        if (place && field == Field::value && kind == NodeKind::bool_) {
            const std::string toggled = model->at(*place).scalar == "true" ? "false" : "true";
            edit([&] { editor->activate(asked); }, [&](const Path& at) { return model->setScalar(at, toggled); });
            return;
        }
        editor->activate(asked);
        if (!place || (field == Field::key && !isMember(*place)))
            return;
        reveal(*place);
        editing = Editing{*selection, field};
    }
    bool isMember(const Path& path) const {
        return !path.empty() && model->at({path.begin(), path.end() - 1}).kind == NodeKind::object;
    }
    void commitSomething() {
        if (!editing)
            activate();
        if (!editing)
            return;
        static constexpr std::array texts{"", "a", "b", "clave", "12", "-1e5", "true", "false", "a copia"};
        const std::string text = oneOf(texts);
        const Editing committed = *editing;
        const Path place = places.at(committed.id);
        const NaiveValue& value = model->at(place);
        const NodeID rootBefore = node({});
        Place focus;
        if (committed.field == Field::key && value.key != text)
            focus = model->setKey(place, text);
        else if (committed.field == Field::value && value.scalar != text && JSONScalar::isValid(text, value.kind))
            focus = model->setScalar(place, text);
        commit(text, committed);
        commit("b", committed);
        editing.reset();
        if (focus)
            noteEdit(focus, rootBefore);
    }
    void cancel() {
        editor->setEditing(std::nullopt);
        editing.reset();
    }

    void toggle() {
        const NodeID id =
            oneIn(20) ? NodeID{static_cast<std::int32_t>(below(tree().storedNodeCount() + 2))} : oneOf(nodes);
        const bool recursive = oneIn(3);
        editor->toggleExpansion(id, recursive);
        if (places.contains(id))
            setExpanded(id, !expanded.contains(id), recursive);
    }
    void expandAll() {
        const bool isExpanded = oneIn(2);
        editor->setAllExpanded(isExpanded);
        setExpanded(node({}), isExpanded, true);
        setExpanded(node({}), true, false);
    }
    void expandSelection() {
        const bool recursive = oneIn(2);
        const bool isThere = placeOf(selection) && isContainer(tree().kind(*selection));
        const bool doesSomething = isThere && (recursive || !expanded.contains(*selection));
        EXPECT_EQ(editor->expandSelection(recursive), doesSomething);
        if (doesSomething)
            setExpanded(*selection, true, recursive);
    }
    void collapseOrSelectParent() {
        const Place place = placeOf(selection);
        const bool collapses = place && isContainer(tree().kind(*selection)) && expanded.contains(*selection);
        const bool goesUp = place && !collapses && !place->empty();
        EXPECT_EQ(editor->collapseOrSelectParent(), collapses || goesUp);
        if (collapses)
            expanded.erase(*selection);
        if (goesUp)
            selection = node({place->begin(), place->end() - 1});
    }
    void reload() {
        editor->reload();
        noteReload();
    }

    void format() {
        const JSONStyle style = oneIn(2) ? JSONStyle::compact() : JSONStyle::pretty(JSONStyle::Indent::tab, false);
        JSONContent content = JSONContent::fromText(JSONSerializer::serializeToString(tree(), std::nullopt, style));
        document->replaceContent(std::move(content), manager.get());
        model->replaceContent();
        noteReload();
    }
    void noteStep(bool isReplacement, const Place& focus, NodeID rootBefore) {
        if (isReplacement)
            noteReload();
        else
            noteEdit(focus, rootBefore);
    }
    void undo() {
        const NaiveDocument::Step* step = model->undoable();
        const NodeID rootBefore = node({});
        manager->undo();
        if (!step)
            return;
        model->undo();
        noteStep(step->isReplacement, step->selectedByUndo, rootBefore);
    }
    void redo() {
        const NaiveDocument::Step* step = model->redoable();
        const NodeID rootBefore = node({});
        manager->redo();
        if (!step)
            return;
        model->redo();
        noteStep(step->isReplacement, step->selectedByRedo, rootBefore);
    }
    void save() {
        document->noteSaved(document->stateToken().current());
        model->save();
    }

    std::mt19937 random;
    std::optional<NaiveDocument> model;
    std::map<NodeID, Path> places;
    std::vector<NodeID> nodes;
    std::set<NodeID> expanded;
    std::optional<NodeID> selection;
    std::optional<Editing> editing;
    qsizetype expectedErrors = 0;
};

} // namespace quelm
