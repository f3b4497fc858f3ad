#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/EditorWindow/MessageBar.h"
#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/EditorWindow/TextPage.h"
#include "Quelm/EditorWindow/TextPreview.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QLabel>
#include <QScreen>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class EditorViewTests : public testing::Test {
protected:
    EditorView& show(std::string_view text) {
        window = std::make_unique<EditorView>(documentWithText(text));
        window->showDocument();
        window->show();
        return *window;
    }
    void replace(std::string_view text) { window->document().apply(JSONContent::fromText(TextRope(SharedText(text)))); }
    TreeView* tree() const { return qobject_cast<TreeView*>(window->centralWidget()); }
    TextPage* text() const { return qobject_cast<TextPage*>(window->centralWidget()); }

    TemporaryPreferences preferences;
    std::unique_ptr<EditorView> window;
};

TEST_F(EditorViewTests, AValidDocumentIsShownAsATree) {
    show("{\"a\":1}");
    ASSERT_NE(tree(), nullptr);
    EXPECT_EQ(tree()->editor().outline().rowCount(), 2);
    EXPECT_EQ(window->focusWidget(), tree());
}

TEST_F(EditorViewTests, AnInvalidDocumentIsShownAsTextWithThePlaceOfItsError) {
    show("{\"a\":1,\n\n  \"b\": [1, 2 3]}");
    ASSERT_NE(text(), nullptr);
    ASSERT_NE(text()->errorBar(), nullptr);
    EXPECT_EQ(text()->errorBar()->text(), QStringLiteral("Línea 3, columna 14: Se esperaba ',' o ']'"));
    EXPECT_TRUE(text()->errorBar()->isVisible());
    EXPECT_EQ(text()->preview().lines().size(), 3);
}

TEST_F(EditorViewTests, AnEmptyFileIsShownAsTextWithItsError) {
    show("");
    ASSERT_NE(text(), nullptr);
    EXPECT_EQ(text()->errorBar()->text(), QStringLiteral("Línea 1, columna 1: Se esperaba un valor"));
}

TEST_F(EditorViewTests, AValidDocumentIsShownAsTextWhenThatIsPreferred) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    show("{ \"a\" :1}");
    ASSERT_NE(text(), nullptr);
    EXPECT_EQ(text()->errorBar(), nullptr);
    EXPECT_EQ(text()->preview().lines(), QStringList{QStringLiteral("{ \"a\" :1}")});
}

TEST_F(EditorViewTests, APreviewSaysThatItIsOne) {
    show("[1");
    const auto bars = text()->findChildren<MessageBar*>();
    ASSERT_EQ(bars.size(), 2);
    EXPECT_EQ(bars.last()->text(), QStringLiteral("Vista previa de solo lectura."));
    replace("[" + std::string(100'000, ' '));
    EXPECT_EQ(text()->findChildren<MessageBar*>().last()->text(),
              QStringLiteral("Vista previa de solo lectura: se muestra el texto alrededor del error."));
}

TEST_F(EditorViewTests, TheEditorFollowsTheDocument) {
    show("[1]");
    replace("[1,");
    ASSERT_NE(text(), nullptr);
    replace("[1,]");
    EXPECT_EQ(text()->errorBar()->text(), QStringLiteral("Línea 1, columna 4: Valor inesperado"));
    replace("[1,2]");
    ASSERT_NE(tree(), nullptr);
    EXPECT_EQ(tree()->editor().outline().rowCount(), 3);
}

TEST_F(EditorViewTests, ADocumentThatIsStillToComeIsAnnounced) {
    EditorView window(std::make_shared<JSONDocument>());
    window.show();
    EXPECT_TRUE(window.isOpening());
    ASSERT_NE(qobject_cast<OpeningPage*>(window.centralWidget()), nullptr);
    EXPECT_EQ(window.centralWidget()->findChild<QLabel*>()->text(), QStringLiteral("Abriendo…"));
    window.document().apply(JSONContent::fromText(TextRope(SharedText("[1]"))));
    EXPECT_NE(qobject_cast<OpeningPage*>(window.centralWidget()), nullptr);
    window.showDocument();
    EXPECT_FALSE(window.isOpening());
    EXPECT_NE(qobject_cast<TreeView*>(window.centralWidget()), nullptr);
}

TEST_F(EditorViewTests, TheTitleIsTheNameOfTheFile) {
    show("[]");
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Sin título"));
    window->document().configuration().setFileLocation(QStringLiteral("/datos/año.json"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("año.json"));
}

TEST_F(EditorViewTests, ANewWindowHasItsSizeAsFarAsTheScreenHasRoom) {
    show("[]");
    EXPECT_EQ(EditorView::defaultSize(), QSize(scaledPixels(860), scaledPixels(760)));
    EXPECT_EQ(window->size(), EditorView::defaultSize().boundedTo(window->screen()->availableSize()));
}

} // namespace
} // namespace quelm
