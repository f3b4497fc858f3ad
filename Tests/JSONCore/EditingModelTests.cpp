// Random editing of random documents, compared with plain models of the tree and of its outline at every
// step.

#include "Tests/JSONCore/Models/EditedDocument.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"
#include "Tests/JSONCore/Support/RandomEditing.h"
#include "Tests/JSONCore/Support/RandomJSON.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::EditedDocument;
using test::Random;

/// What the tree tells about a node and about keys must be what the model tells.
void checkAnswers(const EditedDocument& document, Random& random) {
    const NodeID id = test::randomNode(document, random);
    ASSERT_EQ(document.tree().path(id), document.model().path(id));
    ASSERT_EQ(document.tree().indexInParent(id), document.model().indexInParent(id));
    ASSERT_EQ(document.tree().subtreeSize(id), document.model().subtreeSize(id));
    const NodeID parent = document.model()[id].parent.value_or(id);
    if (document.model()[parent].kind != NodeKind::object)
        return;
    const std::string key = random.oneIn(2) ? document.model()[id].key : test::randomKey(random);
    ASSERT_EQ(document.tree().keyOccurrences(parent, key), document.model().keyOccurrences(parent, key)) << key;
    ASSERT_EQ(document.tree().uniqueKey(key, parent), document.model().uniqueKey(key, parent)) << key;
}

struct Course {
    int steps;
    /// Steps from one comparison of all nodes to the next.
    int nodesEvery;
    /// Steps from one comparison of all rows to the next.
    int rowsEvery;
    std::int64_t largestCopy;
    /// Once in so many steps a snapshot is kept.
    std::int64_t snapshotEvery;
};

void editAtRandom(EditedDocument& document, const Course& course, Random& random) {
    for (int step = 1; step <= course.steps; ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        test::takeRandomStep(document, random, course.largestCopy);
        if (step % course.rowsEvery == 0)
            document.checkRows();
        if (step % course.nodesEvery == 0)
            document.checkNodes();
        checkAnswers(document, random);
        if (random.oneIn(course.snapshotEvery))
            document.keepSnapshot();
        if (testing::Test::HasFailure())
            return;
    }
    document.checkRows();
    document.checkNodes();
    document.checkSnapshots();
}

/// A document of that many members or elements, an inner container here and there. The keys of members come
/// from the stock of `randomKey`, so that most of them have many siblings of the same key.
std::string wideDocument(std::int64_t count, bool isObject, Random& random) {
    std::string text(1, isObject ? '{' : '[');
    for (std::int64_t i = 0; i < count; ++i) {
        text += i ? "," : "";
        if (isObject && random.oneIn(3))
            text += "\"e\\u0301 " + std::to_string(random.below(count)) + "\":";
        else if (isObject)
            text += (random.oneIn(2) ? "\"clave " : "\"\u00E9 ") + std::to_string(random.below(count)) + "\":";
        if (random.oneIn(50))
            text += R"({"a":[1,2],"a":"x"})";
        else
            text += std::to_string(i);
    }
    return text + (isObject ? '}' : ']');
}

TEST(EditingModel, SmallDocumentsAgreeAtEveryStep) {
    test::forEachRound(400, [](Random& random) {
        EditedDocument document(
            test::randomJSON(random, {1 + random.below(60), 1 + random.below(12), random.oneIn(2)}));
        editAtRandom(document, {200, 1, 1, 30, random.oneIn(2) ? 20 : 1'000}, random);
    });
}

TEST(EditingModel, DocumentsOfAFewThousandValuesAgreeAtEveryStep) {
    test::forEachRound(8, [](Random& random) {
        EditedDocument document(test::randomJSON(random, {3'000, 100 + random.below(2'000), random.oneIn(2)}));
        document.setExpanded(document.tree().root(), true, true);
        editAtRandom(document, {120, 4, 1, 3'000, random.oneIn(2) ? 40 : 1'000}, random);
    });
}

TEST(EditingModel, WideArraysAgree) {
    test::forEachRound(2, [](Random& random) {
        EditedDocument document(wideDocument(40'000, false, random));
        document.setExpanded(document.tree().root(), true, random.oneIn(2));
        editAtRandom(document, {50, 25, 5, 1'000, 30}, random);
    });
}

TEST(EditingModel, WideObjectsAgree) {
    test::forEachRound(2, [](Random& random) {
        EditedDocument document(wideDocument(12'000, true, random));
        document.setExpanded(document.tree().root(), true, random.oneIn(2));
        editAtRandom(document, {50, 25, 5, 1'000, 30}, random);
    });
}

TEST(EditingModel, AWideContainerAgreesWhileItGrowsAndShrinks) {
    test::forEachRound(2, [](Random& random) {
        EditedDocument document(random.oneIn(2) ? "[[],0]" : R"({"a":{},"b":0})");
        const NodeID container = document.model()[document.model().root()].children[0];
        document.setExpanded(container, true, false);
        const auto sizeNow = [&] { return static_cast<std::int64_t>(document.model()[container].children.size()); };
        const auto check = [&] {
            document.checkRows();
            document.checkNodes();
            return !testing::Test::HasFailure();
        };
        // By thousands in one change, since the models are slow, each to a place of its own or all to one.
        constexpr std::int64_t batch = 5'000;
        while (sizeNow() < 40'000) {
            std::vector<TreeEdit> edits;
            const std::int64_t place = random.oneIn(2) ? random.below(sizeNow() + 1) : -1;
            for (std::int64_t i = 0; i < batch; ++i) {
                const NodeID added = document.addNode(NodeKind::null, test::randomKey(random), "");
                edits.push_back(
                    TreeEdit::insert(added, container, place >= 0 ? place : random.below(sizeNow() + i + 1)));
            }
            document.applyList(edits);
            ASSERT_TRUE(check());
        }
        while (sizeNow() > 100) {
            auto left = document.model()[container].children;
            std::vector<TreeEdit> edits;
            const std::int64_t place = random.oneIn(2) ? random.below(sizeNow()) : -1;
            for (std::int64_t i = 0; i < batch && !left.empty(); ++i) {
                const auto size = static_cast<std::int64_t>(left.size());
                const auto which = left.begin() + (place >= 0 ? std::min(place, size - 1) : random.below(size));
                edits.push_back(TreeEdit::remove(*which));
                left.erase(which);
            }
            document.applyList(edits);
            ASSERT_TRUE(check());
        }
        for (int i = 0; i < 5; ++i) {
            document.undo();
            ASSERT_TRUE(check());
        }
    });
}

TEST(EditingModel, UndoingEverythingRestoresTheDocumentAndRedoingTheResult) {
    test::forEachRound(60, [](Random& random) {
        EditedDocument document(test::randomJSON(random, {100, 20, true}));
        const JSONTree before = document.tree();
        for (int step = 0; step < 80; ++step)
            test::takeRandomStep(document, random, 100);
        // Steps may have undone something themselves.
        const JSONTree after = document.tree();
        int undone = 0;
        for (; document.canUndo(); ++undone)
            document.undo();
        ASSERT_EQ(document.tree(), before);
        for (; undone > 0; --undone)
            document.redo();
        ASSERT_EQ(document.tree(), after);
        document.checkNodes();
        document.checkRows();
    });
}

} // namespace
} // namespace quelm
