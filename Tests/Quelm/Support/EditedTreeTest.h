#pragma once

#include "JSONCore/JSONSerializer.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Tests/Quelm/Support/FakePasteboard.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// A tree editor with an undo manager, as its window has them, and a pasteboard of its own. Nodes are named by their
/// positions on the way down from the top-level value.
class EditedTreeTest : public testing::Test {
protected:
    using Field = TreeEditor::Field;
    using Editing = TreeEditor::Editing;
    using Path = std::vector<std::int64_t>;

    void open(std::string_view text) {
        document = documentWithText(text);
        manager = std::make_unique<UndoManager>();
        manager->setStateToken(&document->stateToken());
        editor = std::make_unique<TreeEditor>(document, pasteboard);
        editor->setUndoManager(manager.get());
        editor->onError = [this](const QString& message) { errors.append(message); };
        editor->reload();
    }
    /// The same with that node selected.
    void open(std::string_view text, const Path& selected) {
        open(text);
        select(selected);
    }

    const JSONTree& tree() const { return *document->content().tree; }
    NodeID node(const Path& path) const {
        NodeID id = tree().root();
        for (std::int64_t index : path)
            id = tree().children(id)[index];
        return id;
    }
    void select(const Path& path) { editor->select(node(path)); }
    bool isExpanded(const Path& path) const { return editor->outline().expanded().contains(node(path)); }
    Editing keyOf(const Path& path) const { return {node(path), Field::key}; }
    Editing valueOf(const Path& path) const { return {node(path), Field::value}; }

    void commit(std::string_view text, Editing editing) { editor->commit(SharedText(text), editing); }
    /// Opens the field of the selection and commits a text as its view would.
    void enter(std::string_view text, Field field) {
        editor->activate(field);
        ASSERT_TRUE(editor->editing());
        commit(text, *editor->editing());
    }

    /// Makes a node and takes it back, so that the selection names a node that is not part of the document.
    NodeID selectDetachedNode() {
        editor->insert(true);
        const NodeID detached = *editor->selection();
        manager->undo();
        EXPECT_EQ(editor->selection(), detached);
        EXPECT_FALSE(editor->isLinked(detached));
        return detached;
    }

    std::string json() const {
        return std::string(JSONSerializer::serialize(tree(), std::nullopt, JSONStyle::compact()).view());
    }
    std::string saved() { return std::string(JSONDocument::fileContents(document->snapshot()).view()); }

    /// The rows in one line: each node's depth, with "+" where it is expanded.
    std::string rows() const {
        std::string rows;
        for (std::int64_t row = 0; row < editor->outline().rowCount(); ++row) {
            rows += std::to_string(editor->outline().rowDepth(row));
            rows += editor->outline().row(row, tree()).isExpanded ? "+ " : " ";
        }
        return rows;
    }
    void checkInvariants() const {
        editor->outline().checkInvariants(tree());
        tree().checkInvariants();
    }

    TemporaryPreferences preferences;
    FakePasteboard pasteboard;
    QStringList errors;
    std::shared_ptr<JSONDocument> document;
    std::unique_ptr<UndoManager> manager;
    std::unique_ptr<TreeEditor> editor;
};

} // namespace quelm
