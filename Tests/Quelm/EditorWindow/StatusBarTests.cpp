#include "Quelm/EditorWindow/WorkIndicator.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Tests/Quelm/EditorWindow/StatusBarTest.h"

#include <QLineEdit>
#include <QTest>

namespace quelm {
namespace {

using State = TextValidator::State;

class StatusBarTests : public StatusBarTest {};

TEST_F(StatusBarTests, ATreeIsValidAndHasItsNodesAndItsFormat) {
    open("{\"a\":[1,2]}");
    EXPECT_EQ(symbol().symbol(), QStringLiteral("checkmark.circle.fill"));
    EXPECT_EQ(symbol().colorRole(), ColorRole::green);
    EXPECT_EQ(symbol().accessibleName(), QStringLiteral("JSON válido"));
    EXPECT_EQ(texts(),
              QStringList({QStringLiteral("4 nodos"), QStringLiteral("Formato: compacto"), QStringLiteral("$")}));
    EXPECT_EQ(button(QStringLiteral("Ir al error")), nullptr);
}

TEST_F(StatusBarTests, ATextOfWhichNothingIsKnownSaysSo) {
    openAsText("[1]");
    EXPECT_EQ(symbol().symbol(), QStringLiteral("circle.dashed"));
    EXPECT_EQ(texts(), QStringList({QStringLiteral("Sin validar"), QStringLiteral("Formato: compacto")}));
    EXPECT_EQ(button(QStringLiteral("Ir al error")), nullptr);
}

TEST_F(StatusBarTests, AValidTextHasItsNodes) {
    openAsText("[1]");
    setState(State::valid(2));
    EXPECT_EQ(symbol().symbol(), QStringLiteral("checkmark.circle.fill"));
    EXPECT_EQ(symbol().accessibleName(), QStringLiteral("JSON válido"));
    EXPECT_EQ(texts(), QStringList({QStringLiteral("2 nodos"), QStringLiteral("Formato: compacto")}));
}

TEST_F(StatusBarTests, AnInvalidTextHasItsErrorAndTheWayToIt) {
    openAsText("{\n\t\"a\": 1\n}");
    setState(errorState(3, 14));
    EXPECT_EQ(symbol().symbol(), QStringLiteral("xmark.octagon.fill"));
    EXPECT_EQ(symbol().colorRole(), ColorRole::red);
    EXPECT_EQ(symbol().accessibleName(), QStringLiteral("JSON no válido"));
    EXPECT_EQ(texts(), QStringList({QStringLiteral("Línea 3, columna 14: Valor inesperado"),
                                    QStringLiteral("Formato: tabulador")}));
    EXPECT_NE(button(QStringLiteral("Ir al error")), nullptr);
}

TEST_F(StatusBarTests, TheNumberOfNodesIsAlwaysInThePluralAndInPlainDigits) {
    openAsText("1");
    setState(State::valid(1));
    EXPECT_EQ(texts().front(), QStringLiteral("1 nodos"));
    setState(State::valid(1234567));
    EXPECT_EQ(texts().front(), QStringLiteral("1234567 nodos"));
}

TEST_F(StatusBarTests, EveryStyleHasItsName) {
    using Indent = JSONStyle::Indent;
    open("[]");
    for (const auto& [style, name] : {std::pair{JSONStyle::compact(), "Formato: compacto"},
                                      std::pair{JSONStyle::pretty(Indent::tab, false), "Formato: tabulador"},
                                      std::pair{JSONStyle::pretty(Indent::fourSpaces, true), "Formato: 4 espacios"},
                                      std::pair{JSONStyle::pretty(Indent::twoSpaces, false), "Formato: 2 espacios"}}) {
        JSONContent content = model->document().content();
        content.style = style;
        model->document().setContent(content);
        refresh();
        EXPECT_EQ(texts()[1], QString::fromUtf8(name));
    }
}

TEST_F(StatusBarTests, ThePathFollowsTheSelection) {
    open("{\"a\":[1,2],\"con espacio\":0}");
    EXPECT_EQ(texts().back(), QStringLiteral("$"));
    const JSONTree& tree = *model->document().content().tree;
    select(tree.children(child(0))[1]);
    EXPECT_EQ(texts().back(), QStringLiteral("$.a[1]"));
    select(child(1));
    EXPECT_EQ(texts().back(), QStringLiteral("$[\"con espacio\"]"));
    model->tree().setSelection(std::nullopt);
    refresh();
    EXPECT_EQ(texts().back(), QStringLiteral("Formato: compacto"));
}

TEST_F(StatusBarTests, AnEditChangesNodesAndPath) {
    open("[1,{\"b\":2}]");
    const NodeID moved = child(1);
    select(moved);
    model->tree().move(-1);
    refresh();
    EXPECT_EQ(texts().back(), QStringLiteral("$[0]"));
    model->tree().duplicate();
    refresh();
    EXPECT_EQ(texts().front(), QStringLiteral("6 nodos"));
    EXPECT_EQ(texts().back(), QStringLiteral("$[1]"));
}

TEST_F(StatusBarTests, ASelectionThatLeftTheDocumentHasNoPath) {
    open("[1]");
    UndoManager steps;
    model->setUndoManager(&steps);
    select(child(0));
    model->tree().duplicate();
    refresh();
    EXPECT_EQ(texts().back(), QStringLiteral("$[1]"));
    const NodeID inserted = *model->tree().selection();
    steps.undo();
    model->tree().select(inserted);
    refresh();
    EXPECT_EQ(texts().back(), QStringLiteral("Formato: compacto"));
}

TEST_F(StatusBarTests, InTextModeThereIsNoPath) {
    openAsText("[1]");
    model->tree().select(JSONTree::holder);
    refresh();
    EXPECT_EQ(texts().back(), QStringLiteral("Formato: compacto"));
}

TEST_F(StatusBarTests, AnotherContentIsShownAtOnce) {
    open("[1]");
    model->document().apply(JSONContent::fromText(TextRope(SharedText(std::string_view("{\n    \"a\": 1\n}")))));
    refresh();
    EXPECT_EQ(texts(),
              QStringList({QStringLiteral("2 nodos"), QStringLiteral("Formato: 4 espacios"), QStringLiteral("$")}));
}

TEST_F(StatusBarTests, TheLastStateStaysUntilTheNextIsKnown) {
    openAsText("[1]");
    setState(State::valid(2));
    model->validator().schedule(TextValidator::typingPause, [] { return TextRope(); });
    refresh();
    EXPECT_EQ(texts().front(), QStringLiteral("2 nodos"));
}

TEST_F(StatusBarTests, TheButtonAsksForTheErrorEveryTime) {
    openAsText("[1 2]");
    setState(errorState(5, 7));
    QTest::mouseClick(button(QStringLiteral("Ir al error")), Qt::LeftButton);
    ASSERT_TRUE(model->goTo().has_value());
    const TextLocation first = *model->goTo();
    EXPECT_EQ(first.line, 5);
    EXPECT_EQ(first.column, 7);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        model->setGoTo(std::nullopt);
        QTest::keyClick(button(QStringLiteral("Ir al error")), key);
        ASSERT_TRUE(model->goTo().has_value()) << key;
        EXPECT_NE(*model->goTo(), first);
    }
}

TEST_F(StatusBarTests, AButtonIsReachedByTabAndLeavesTheFocusAloneWhenClicked) {
    openAsText("[1 2]");
    QWidget window;
    auto* field = new QLineEdit(&window);
    bar->setParent(&window);
    bar->move(0, 100);
    window.resize(800, 200);
    window.show();
    QApplication::setActiveWindow(&window);
    setState(errorState(1, 4));
    field->setFocus();
    QPushButton* goToError = button(QStringLiteral("Ir al error"));
    QTest::mouseClick(goToError, Qt::LeftButton);
    EXPECT_TRUE(field->hasFocus());
    QTest::keyClick(field, Qt::Key_Tab);
    EXPECT_TRUE(goToError->hasFocus());
    bar->setParent(nullptr);
}

TEST_F(StatusBarTests, WorkIsShownOnlyWhenItTakesLong) {
    open("[1,2,3]");
    const auto* indicator = bar->findChild<WorkIndicator*>();
    EXPECT_TRUE(indicator->isHidden());
    model->format(JSONStyle::compact());
    refresh();
    EXPECT_TRUE(indicator->isHidden());
    EXPECT_EQ(button(QStringLiteral("Cancelar")), nullptr);

    clock.advance(EditorModel::patience + std::chrono::milliseconds(1));
    refresh();
    EXPECT_FALSE(indicator->isHidden());
    EXPECT_EQ(indicator->accessibleName(), QStringLiteral("Operación en curso"));
    EXPECT_NE(button(QStringLiteral("Cancelar")), nullptr);

    QTRY_VERIFY(indicator->isHidden());
    EXPECT_EQ(button(QStringLiteral("Cancelar")), nullptr);
}

TEST_F(StatusBarTests, ChangesOfOneTurnAreShownOnce) {
    open(arrayOfZeros(1000));
    struct Counter : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::MetaCall;
            return false;
        }
        int count = 0;
    } counter;
    bar->installEventFilter(&counter);
    for (std::int64_t index = 0; index < 1000; ++index)
        model->tree().select(child(index));
    EXPECT_EQ(texts().back(), QStringLiteral("$"));
    refresh();
    EXPECT_EQ(counter.count, 1);
    EXPECT_EQ(texts().back(), QStringLiteral("$[999]"));
}

TEST_F(StatusBarTests, AHugeKeyIsCutBeforeItIsShown) {
    constexpr std::size_t size = 10'000'000;
    open("{\"" + std::string(size, 'a') + " \":{\"hijo\":1}}");
    select(model->document().content().tree->children(child(0))[0]);
    EXPECT_LE(bar->contents().path.size(), 1001);
    EXPECT_TRUE(bar->contents().path.startsWith(u'…'));
    EXPECT_TRUE(texts().back().endsWith(QStringLiteral("aaa \"].hijo")));
    EXPECT_TRUE(texts().back().startsWith(u'…'));
}

} // namespace
} // namespace quelm
