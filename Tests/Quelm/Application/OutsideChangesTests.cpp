#include "Quelm/Foundation/Preferences.h"
#include "Tests/Quelm/Application/OutsideChangesTest.h"

#include <gtest/gtest.h>
#include <unistd.h>

// Documents without changes follow their files; see OutsideChangeQuestionTests for those that have some.

namespace quelm {
namespace {

using OutsideChangesTests = OutsideChangesTest;

TEST_F(OutsideChangesTests, AnUneditedDocumentFollowsEveryReplacementOfItsFile) {
    open("[1]");
    for (const std::string_view bytes : {"[2]", "{\"a\" : 3}\n", "[4]"}) {
        replace(bytes);
        EXPECT_TRUE(waitForContent(bytes)) << bytes;
        EXPECT_FALSE(window->undoManager().canUndo());
        EXPECT_EQ(window->windowTitle(), QStringLiteral("datos.json[*]"));
    }
    EXPECT_EQ(box(), nullptr);
}

TEST_F(OutsideChangesTests, AnUneditedDocumentFollowsWhatIsWrittenInPlace) {
    open("[1]");
    writeInPlace("[2]");
    EXPECT_TRUE(waitForContent("[2]"));
    append("\n\n");
    EXPECT_TRUE(waitForContent("[2]\n\n"));
    writeInPlace("[3]");
    EXPECT_TRUE(waitForContent("[3]"));
}

TEST_F(OutsideChangesTests, AChangeOfTheSameLengthIsSeen) {
    open("[1]");
    writeInPlace("[7]");
    EXPECT_TRUE(waitForContent("[7]"));
}

TEST_F(OutsideChangesTests, ADocumentIsNotReadAnewWhenNothingButTheTimesOfItsFileChange) {
    open("[1]");
    const std::int64_t revision = document().revision();
    const FileStamp before = document().configuration().fileState()->stamp;
    replace("[1]");
    EXPECT_TRUE(QTest::qWaitFor([&] { return document().configuration().fileState()->stamp != before; }))
        << "the new stamp is known";
    EXPECT_EQ(document().revision(), revision);
    EXPECT_FALSE(isEdited());
}

TEST_F(OutsideChangesTests, TheTreeKeepsWhatIsExpandedSelectedAndSeen) {
    std::string members;
    for (int member = 0; member < 200; ++member)
        members += ",\"m" + std::to_string(member) + "\":[" + std::to_string(member) + "]";
    open("{\"a\":1" + members + "}");
    const auto node = [&](std::int64_t index) { return tree().tree()->children(tree().tree()->root())[index]; };
    tree().toggleExpansion(node(100), false);
    tree().select(node(100));
    TreeView& view = *window->treeView();
    view.verticalAxis().setPosition(view.verticalAxis().position() + 7);
    const std::int64_t row = tree().outline().index(node(100)).value();
    const int top = view.rowArea(row).value().top();

    replace("{\"n1\":1,\"n2\":2,\"a\":1" + members + "}");
    ASSERT_TRUE(QTest::qWaitFor([&] { return tree().tree()->children(tree().tree()->root()).size() == 203; }));
    EXPECT_EQ(window->treeView(), &view);
    EXPECT_EQ(tree().selection(), node(102));
    EXPECT_TRUE(tree().outline().expanded().contains(node(102)));
    EXPECT_EQ(tree().outline().expanded().size(), 2);
    const std::int64_t now = tree().outline().index(node(102)).value();
    EXPECT_EQ(now, row + 2);
    EXPECT_EQ(view.rowArea(now).value().top(), top);
    tree().outline().checkInvariants(*tree().tree());
}

TEST_F(OutsideChangesTests, TheTextKeepsCaretAndPlace) {
    std::string lines = "[\n";
    for (int line = 0; line < 300; ++line)
        lines += "  \"línea " + std::to_string(line) + "\",\n";
    Preferences::setInitialMode(Preferences::InitialMode::text);
    open(lines + "0]");
    textView().setSelectedRange({textView().textStorage().lineStart(200) + 3, 5});
    textView().verticalAxis().setPosition(2000);
    const std::string more = lines + "  0\n]\n";
    // The editor of before goes with its text.
    const QPointer<JSONTextView> before = window->textEditor();
    replace(more);
    ASSERT_TRUE(waitForContent(more));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !before; }));
    EXPECT_EQ(document().mode(), EditorMode::text);
    EXPECT_TRUE(QTest::qWaitFor([&] { return textView().verticalAxis().position() == 2000; }));
    EXPECT_EQ(textView().selectedRange(), (TextRange{textView().textStorage().lineStart(200) + 3, 5}));
}

TEST_F(OutsideChangesTests, ATreeGivesWayToTextThatIsNotJSONOnlyWhenThatStays) {
    open("{\"a\":1}");
    replace("{\"a\":");
    EXPECT_TRUE(QTest::qWaitFor([&] { return document().mode() == EditorMode::text; }));
    EXPECT_EQ(content(), "{\"a\":");
    replace("{\"a\":2}");
    EXPECT_TRUE(waitForContent("{\"a\":2}"));
    EXPECT_EQ(document().mode(), EditorMode::text) << "the editor is the user's choice from then on";
}

TEST_F(OutsideChangesTests, AFileInTheMiddleOfBeingWrittenLeavesTheTreeAlone) {
    open("{\"a\":1}");
    writeInPlace("{\"a\"");
    settle();
    append(":2}");
    EXPECT_TRUE(waitForContent("{\"a\":2}"));
    EXPECT_EQ(document().mode(), EditorMode::tree);
}

TEST_F(OutsideChangesTests, AFileThatCannotBeReadAnyMoreIsToldOnce) {
    open("[1]");
    replace("\"a\xf1o\"");
    ASSERT_TRUE(waitForBox("\"datos.json\" ha cambiado en el disco y no se puede leer."));
    EXPECT_TRUE(
        box()->informativeText().startsWith(QStringLiteral("Línea 1, columna 1: El archivo no está codificado")))
        << box()->informativeText().toStdString();
    EXPECT_EQ(content(), "[1]");
    EXPECT_TRUE(isEdited()) << "no file holds it any more";
    answer("Aceptar");
    ASSERT_TRUE(waitForNoBox());
    settle();
    EXPECT_EQ(box(), nullptr);
    replace("[2]");
    EXPECT_TRUE(waitForContent("[2]"));
}

TEST_F(OutsideChangesTests, ADeletedFileIsToldAndItsDocumentIsNotSavedAnyMore) {
    open("[1]");
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitForBox(goneText));
    EXPECT_EQ(content(), "[1]");
    EXPECT_TRUE(isEdited());
    answer("Aceptar");
    ASSERT_TRUE(waitForNoBox());
    controller.save(*window);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !isEdited(); }));
    EXPECT_EQ(TemporaryFolder::contents(path), "[1]");
    replace("[2]");
    EXPECT_TRUE(waitForContent("[2]")) << "it is followed again";
}

TEST_F(OutsideChangesTests, AFileThatComesBackAsItWasSettlesTheMatter) {
    open("[1]");
    const QString aside = folder.path(QStringLiteral("aparte.json"));
    ASSERT_TRUE(QFile::rename(path, aside));
    ASSERT_TRUE(waitForBox(goneText));
    ASSERT_TRUE(QFile::rename(aside, path));
    EXPECT_TRUE(waitForNoBox());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isEdited(); }));
}

TEST_F(OutsideChangesTests, AFileThatIsDeletedAndMadeAnewIsFollowedWithoutAWord) {
    open("[1]");
    ASSERT_TRUE(QFile::remove(path));
    settle();
    EXPECT_EQ(box(), nullptr);
    folder.write(QStringLiteral("carpeta/datos.json"), "[2]");
    EXPECT_TRUE(waitForContent("[2]"));
    EXPECT_EQ(box(), nullptr);
}

TEST_F(OutsideChangesTests, AFolderThatIsRenamedTakesItsFileAway) {
    open("[1]");
    ASSERT_TRUE(QDir().rename(folder.path(QStringLiteral("carpeta")), folder.path(QStringLiteral("otra"))));
    ASSERT_TRUE(waitForBox(goneText));
    ASSERT_TRUE(QDir().rename(folder.path(QStringLiteral("otra")), folder.path(QStringLiteral("carpeta"))));
    ASSERT_TRUE(waitForNoBox());
    replace("[2]");
    EXPECT_TRUE(waitForContent("[2]"));
}

TEST_F(OutsideChangesTests, ASymbolicLinkIsFollowedWhereItLeads) {
    const QString target = folder.write(QStringLiteral("destino.json"), "[1]");
    const QString link = folder.path(QStringLiteral("carpeta/enlace.json"));
    ASSERT_TRUE(QFile::link(target, link));
    openPath(link);
    std::ofstream(target.toStdString()) << "[2]";
    ASSERT_TRUE(waitForContent("[2]"));
    const QString fresh = folder.path(QStringLiteral("carpeta/.enlace"));
    ASSERT_TRUE(QFile::link(folder.write(QStringLiteral("otro.json"), "[3]"), fresh));
    ASSERT_EQ(std::rename(fresh.toLocal8Bit(), link.toLocal8Bit()), 0);
    EXPECT_TRUE(waitForContent("[3]"));
}

TEST_F(OutsideChangesTests, SavingIsNoChangeFromOutside) {
    open("[1]");
    editTree("2");
    controller.save(*window);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !isEdited(); }));
    const std::int64_t revision = document().revision();
    settle();
    EXPECT_EQ(document().revision(), revision);
    EXPECT_EQ(box(), nullptr);
    EXPECT_TRUE(window->undoManager().canUndo());
}

TEST_F(OutsideChangesTests, AnOpenFieldIsLeftAlone) {
    open("[1]");
    tree().select(tree().tree()->children(tree().tree()->root()).front());
    tree().activate(TreeEditor::Field::value);
    replace("[2]");
    settle();
    ASSERT_TRUE(tree().editing().has_value());
    EXPECT_EQ(content(), "[1]");
    tree().setEditing(std::nullopt);
    EXPECT_TRUE(waitForContent("[2]"));
}

TEST_F(OutsideChangesTests, AFileUnderAnotherNameComesToTheFront) {
    open("[1]");
    const QString name = folder.path(QStringLiteral("otro nombre.json"));
    ASSERT_EQ(::link(path.toLocal8Bit(), name.toLocal8Bit()), 0);
    controller.open(name);
    EXPECT_EQ(controller.windows().size(), 1);
}

} // namespace
} // namespace quelm
