// Whatever is done to a document, what is recovered is what it held.

#include "Tests/Quelm/Recovery/JournaledDocumentTest.h"

#include <random>

namespace quelm {
namespace {

class DocumentJournalModelTests : public JournaledDocumentTest {
protected:
    std::int64_t below(std::int64_t limit) { return static_cast<std::int64_t>(random() % static_cast<unsigned>(limit)); }

    NodeID anyNode() {
        NodeID node = root();
        while (isContainer(tree().kind(node)) && !tree().children(node).empty() && below(3) != 0)
            node = tree().children(node)[below(tree().children(node).size())];
        return node;
    }

    /// Registered as the tree editor does.
    void applyStep(const std::vector<TreeEdit>& edits) { registerStep(document.applyTreeEdits(edits)); }
    void registerStep(std::vector<TreeEdit> inverse) {
        manager.registerUndo<JSONDocument>(
            &document, [this, inverse](JSONDocument& target) { registerStep(target.applyTreeEdits(inverse)); });
    }

    void editTree() {
        const NodeID node = anyNode();
        std::optional<JSONDocument::AppliedTreeChange> applied;
        applied = document.applyTreeChange([&](JSONTree& tree) -> std::optional<TreeChange> {
            switch (below(6)) {
            case 0:
                return tree.insertChange(node, below(2) == 0);
            case 1:
                return tree.removeChange(node);
            case 2:
                return tree.moveChange(node, below(2) == 0 ? 1 : -1);
            case 3:
                return tree.duplicateChange(node);
            case 4:
                return tree.kindChange(node, allNodeKinds[static_cast<std::size_t>(below(6))]);
            default:
                if (isContainer(tree.kind(node)))
                    return std::nullopt;
                return TreeChange{{TreeEdit::setValue(node, NodeKind::string, "ñ" + std::to_string(below(100)))}, node};
            }
        });
        if (applied)
            registerStep(applied->inverse);
    }

    void editText() {
        const qint64 length = document.textBuffer()->length();
        const qint64 location = below(length + 1);
        const qint64 removed = below(std::min<qint64>(length - location, 3) + 1);
        const TextRope before = document.textBuffer()->text();
        // Now and then something that is JSON again.
        if (below(4) == 0)
            typeAt(0, length, QStringLiteral("{\"a\": [1, {\"é\": true}], \"b\": \"%1\"}").arg(below(100)));
        else
            typeAt(location, removed, below(2) == 0 ? QStringLiteral("7") : QStringLiteral(" "));
        registerRestoring(before);
    }

    void step() {
        switch (below(12)) {
        case 0:
            manager.undo();
            break;
        case 1:
            manager.redo();
            break;
        case 2:
            if (auto content = ContentConversion::reformat(
                    document.snapshot(), JSONStyle::pretty(JSONStyle::Indent::tab, below(2) == 0), {}))
                document.replaceContent(*std::move(content), &manager, ContentOrigin::reformatting);
            break;
        case 3:
            switchMode();
            break;
        case 4:
            if (isSaving)
                finishSave();
            else
                beginSave();
            isSaving = !isSaving;
            break;
        default:
            document.mode() == EditorMode::tree ? editTree() : editText();
        }
    }

    void finishSave() {
        if (below(3) == 0)
            return journal->didNotSave();
        replaceFile();
        if (below(3) == 0) {
            // The file was replaced as far as the journal was told, and was not in the end.
            fileText = fileBefore;
            return journal->didNotSave();
        }
        fileBefore = fileText;
        endSave();
    }

    void switchMode() {
        const EditorMode other = document.mode() == EditorMode::tree ? EditorMode::text : EditorMode::tree;
        bool isDone = false;
        bool hasChanged = false;
        const auto task = document.setMode(other, [&](const auto& result) {
            isDone = true;
            hasChanged = result.has_value();
        });
        ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
        if (!hasChanged)
            return;
        manager.removeAllActions();
        if (other == EditorMode::text)
            document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    }

    void expectRecovery() {
        QCoreApplication::processEvents();
        const bool hasJournal = !journalFiles().isEmpty();
        ASSERT_TRUE(hasJournal || !document.isModified());
        if (!hasJournal)
            return;
        ASSERT_EQ(recovered(fileBefore), savedText());
        ASSERT_EQ(wasModified || isSaving, document.isModified() || isSaving);
    }

    std::mt19937 random;
    bool isSaving = false;
    std::string fileBefore = "{\"b\": [1, 2, {\"c\": null}], \"a\": \"x\", \"a\": 1.50}";
};

TEST_F(DocumentJournalModelTests, WhateverIsDoneIsRecovered) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        journal.reset();
        manager.removeAllActions();
        QDir(folder.path(journalFolder)).removeRecursively();
        isSaving = false;
        const std::string start = "{\"b\": [1, 2, {\"c\": null}], \"a\": \"x\", \"a\": 1.50}";
        fileBefore = start;
        if (seed % 2 == 0)
            openText(start);
        else
            openTree(start);
        for (int count = 0; count < 40; ++count) {
            step();
            if (count % 4 != 3)
                continue;
            ASSERT_NO_FATAL_FAILURE(expectRecovery()) << count;
        }
    }
}

} // namespace
} // namespace quelm
