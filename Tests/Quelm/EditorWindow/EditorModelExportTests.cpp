#include "Quelm/Foundation/BackgroundThreads.h"
#include "Tests/Quelm/EditorWindow/EditorModelTest.h"

#include <QFileInfo>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditorModelExportTests : public EditorModelTest {
protected:
    QString path(const char* name = "copia.json") const { return folder.path(QString::fromUtf8(name)); }

    void exportTo(const QString& path, const JSONStyle& style = compact) {
        model->prepareExport(style);
        model->writeExport(model->export_(), path);
    }
    void validate() {
        clock.advance(TextValidator::typingPause);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model->validator().isPending(); }));
    }

    TemporaryFolder folder;
};

// Preparing.

TEST_F(EditorModelExportTests, AnExportIsACopyOfTheDocumentInTheStyle) {
    openTree("[1, 2]");
    model->prepareExport(pretty);
    ASSERT_NE(model->export_(), nullptr);
    EXPECT_EQ(model->export_()->style(), pretty);
    EXPECT_EQ(model->export_()->content().tree->nodeCount(), 3);
    EXPECT_EQ(document->content().style, JSONStyle::detect("[1, 2]"));
    EXPECT_THAT(takeLog(), ElementsAre("read", "export"));
    model->setExport(nullptr);
    EXPECT_EQ(model->export_(), nullptr);
}

TEST_F(EditorModelExportTests, WhatIsTypedIsExported) {
    openText("[1]");
    type("[1, 2]");
    exportTo(path());
    wait();
    EXPECT_EQ(TemporaryFolder::contents(path()), "[1,2]");
    // Which saves nothing.
    EXPECT_TRUE(document->isModified());
    EXPECT_EQ(shownText(), "[1, 2]");
}

TEST_F(EditorModelExportTests, TextWithAKnownErrorIsRefused) {
    openText("[1]");
    type("[1 2]");
    validate();
    model->prepareExport(pretty);
    EXPECT_EQ(model->export_(), nullptr);
    EXPECT_EQ(message(), "No se puede exportar un JSON inválido.\nLínea 1, columna 4: Se esperaba ',' o ']'");
    EXPECT_EQ(place(), "");
    EXPECT_THAT(takeLog(), ElementsAre("read", "message"));
}

TEST_F(EditorModelExportTests, TextOfWhichNothingIsKnownGoesAhead) {
    openText("[1]");
    type("[1 2]");
    model->validateShownText();
    ASSERT_TRUE(model->validator().state().isIdle());
    model->prepareExport(pretty);
    EXPECT_NE(model->export_(), nullptr);
    EXPECT_EQ(message(), "");
}

TEST_F(EditorModelExportTests, InTreeModeTheValidatorIsNotAsked) {
    openTree("[1]");
    model->validator().adopt(TextValidator::State::invalid(JSONParseError{"x", 0, 1, 1}));
    model->prepareExport(pretty);
    EXPECT_NE(model->export_(), nullptr);
}

// Writing.

TEST_F(EditorModelExportTests, TheFileIsWrittenInTheStyle) {
    openTree("{\"b\": 1, \"a\": [ ]}");
    exportTo(path("compacto.json"), compact);
    exportTo(path("bonito.json"), pretty);
    exportTo(path("ordenado.json"), JSONStyle::pretty(JSONStyle::Indent::fourSpaces, true));
    wait();
    EXPECT_EQ(TemporaryFolder::contents(path("compacto.json")), "{\"b\":1,\"a\":[]}");
    EXPECT_EQ(TemporaryFolder::contents(path("bonito.json")), "{\n  \"b\": 1,\n  \"a\": []\n}\n");
    EXPECT_EQ(TemporaryFolder::contents(path("ordenado.json")), "{\n    \"a\": [],\n    \"b\": 1\n}\n");
    EXPECT_FALSE(document->isModified());
}

TEST_F(EditorModelExportTests, ThePreferenceForSortedKeysCountsForThePreferredStyleOnly) {
    Preferences::setSortsKeys(true);
    openTree("{\"b\": 1, \"a\": {\"d\": 2, \"c\": [ ]}}");
    exportTo(path("bonito.json"), Preferences::preferredStyle());
    exportTo(path("compacto.json"), compact);
    wait();
    EXPECT_EQ(TemporaryFolder::contents(path("bonito.json")),
              "{\n  \"a\": {\n    \"c\": [],\n    \"d\": 2\n  },\n  \"b\": 1\n}\n");
    EXPECT_EQ(TemporaryFolder::contents(path("compacto.json")), "{\"b\":1,\"a\":{\"d\":2,\"c\":[]}}");
    EXPECT_EQ(savedText(), "{\"b\": 1, \"a\": {\"d\": 2, \"c\": [ ]}}");
}

TEST_F(EditorModelExportTests, OneIsWrittenAfterTheOther) {
    openTree("[1, 2]");
    exportTo(path(), compact);
    exportTo(path(), pretty);
    takeLog();
    std::vector<bool> isMoreToCome;
    QObject::connect(&*model, &EditorModel::exportingFinished, &*model,
                     [&] { isMoreToCome.push_back(model->isExporting()); });
    wait();
    EXPECT_THAT(log, ElementsAre("exported", "exporting", "exported"));
    EXPECT_THAT(isMoreToCome, ElementsAre(true, false));
    EXPECT_EQ(TemporaryFolder::contents(path()), "[\n  1,\n  2\n]\n");
}

TEST_F(EditorModelExportTests, TheDocumentCanBeEditedWhileACopyIsWritten) {
    openText("[1]");
    BlockedPool pool;
    exportTo(path());
    EXPECT_FALSE(model->isBusy());
    type("[2]");
    pool.finish();
    EXPECT_EQ(TemporaryFolder::contents(path()), "[1]");
    EXPECT_EQ(shownText(), "[2]");
}

TEST_F(EditorModelExportTests, WritingIsShownWhenItHasTakenHalfASecond) {
    openText("[1]");
    BlockedPool pool;
    exportTo(path());
    clock.advance(EditorModel::patience);
    EXPECT_TRUE(model->isWorkShown());
    pool.finish();
    EXPECT_FALSE(model->isWorkShown());
    EXPECT_THAT(takeLog(), ElementsAre("read", "export", "exporting", "work", "work", "exported"));
}

TEST_F(EditorModelExportTests, TextThatTurnsOutToBeInvalidWritesNothing) {
    folder.write(QStringLiteral("copia.json"), "antes");
    openText("[1]");
    type("[1,\n2 3]");
    exportTo(path());
    wait();
    EXPECT_EQ(message(), "Línea 2, columna 3: Se esperaba ',' o ']'");
    EXPECT_EQ(TemporaryFolder::contents(path()), "antes");
    EXPECT_THAT(takeLog(), ElementsAre("read", "export", "exporting", "message", "not exported"));

    exportTo(path("nueva.json"));
    wait();
    EXPECT_FALSE(QFileInfo::exists(path("nueva.json")));
}

TEST_F(EditorModelExportTests, AFileThatCannotBeWrittenIsReported) {
    openTree("[1]");
    exportTo(path("falta/copia.json"));
    wait();
    EXPECT_EQ(message(),
              "No se pudo guardar «copia.json».\nLa carpeta «" + path("falta").toStdString() + "» no existe.");
    EXPECT_EQ(log.back(), "not exported");

    folder.write(QStringLiteral("archivo"), "antes");
    exportTo(path("archivo/copia.json"));
    wait();
    EXPECT_EQ(message(),
              "No se pudo guardar «copia.json».\nLa carpeta «" + path("archivo").toStdString() + "» no existe.");
    EXPECT_EQ(TemporaryFolder::contents(path("archivo")), "antes");
}

TEST_F(EditorModelExportTests, AnExportGoesOnWhenTheDocumentIsAppliedAnew) {
    openText("[1, 2]");
    BlockedPool pool;
    exportTo(path());
    document->apply(JSONContent::fromText(TextRope(SharedText("[3]"))));
    EXPECT_TRUE(model->isExporting());
    pool.finish();
    EXPECT_EQ(TemporaryFolder::contents(path()), "[1,2]");
}

// Cancelling, and a model that goes.

TEST_F(EditorModelExportTests, ACancelledExportWritesNothingAndIsNotReported) {
    openTree("[1]");
    folder.write(QStringLiteral("copia.json"), "antes");
    BlockedPool pool;
    exportTo(path());
    exportTo(path("nueva.json"));
    takeLog();
    model->cancelWork();
    EXPECT_TRUE(model->isExporting());
    pool.finish();
    EXPECT_FALSE(model->isExporting());
    EXPECT_EQ(TemporaryFolder::contents(path()), "antes");
    EXPECT_FALSE(QFileInfo::exists(path("nueva.json")));
    EXPECT_THAT(log, ElementsAre("not exported"));
}

TEST_F(EditorModelExportTests, AFailureThatComesAfterBeingCancelledIsNotTold) {
    openTree("[1]");
    exportTo(path("falta/copia.json"));
    backgroundThreads().waitForDone();
    takeLog();
    model->cancelWork();
    QCoreApplication::processEvents();
    EXPECT_THAT(log, ElementsAre("not exported"));

    // It counts for that export only.
    exportTo(path("falta/copia.json"));
    wait();
    EXPECT_THAT(message(), testing::StartsWith("No se pudo guardar"));
}

TEST_F(EditorModelExportTests, ExportsGoOnWhenTheModelGoes) {
    openTree("[1, 2]");
    BlockedPool pool;
    exportTo(path("primera.json"));
    exportTo(path("segunda.json"), pretty);
    takeLog();
    model.reset();
    document.reset();
    pool.finish();
    EXPECT_EQ(TemporaryFolder::contents(path("primera.json")), "[1,2]");
    EXPECT_EQ(TemporaryFolder::contents(path("segunda.json")), "[\n  1,\n  2\n]\n");
    EXPECT_THAT(log, IsEmpty());
}

} // namespace
} // namespace quelm
