#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Documents/DocumentSaving.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

class DocumentLoadingTests : public testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(DocumentLoadingTests, AValidFileComesWithTextTreeAndStyle) {
    const auto content = loadDocument(folder.write(QStringLiteral("a.json"), "{\n\t\"a\": 1\n}\n"));
    ASSERT_TRUE(content);
    EXPECT_TRUE(content->text);
    EXPECT_TRUE(content->tree);
    EXPECT_EQ(content->style, JSONStyle::pretty(JSONStyle::Indent::tab, false));
}

TEST_F(DocumentLoadingTests, InvalidJSONIsNoFailure) {
    const auto content = loadDocument(folder.write(QStringLiteral("a.json"), "[1,]"));
    ASSERT_TRUE(content);
    EXPECT_FALSE(content->tree);
    EXPECT_EQ(content->parseError->message, "Valor inesperado");
}

TEST_F(DocumentLoadingTests, AnotherEncodingIsAFailureInWords) {
    const auto content = loadDocument(folder.write(QStringLiteral("a.json"), "\"a\xf1o\""));
    ASSERT_FALSE(content);
    EXPECT_EQ(content.error().message, QStringLiteral("Línea 1, columna 1: El archivo no está codificado en UTF-8"));
}

TEST_F(DocumentLoadingTests, AMissingFileIsAFailureInWords) {
    const auto content = loadDocument(folder.path(QStringLiteral("nada.json")));
    ASSERT_FALSE(content);
    EXPECT_EQ(content.error().message, QStringLiteral("El archivo no existe."));
}

TEST_F(DocumentLoadingTests, WhatWasLoadedIsSavedByteForByte) {
    const std::string bytes = "\xEF\xBB\xBF{ \"b\":1,\r\n \"a\" : [ ] }";
    const QString path = folder.write(QStringLiteral("a.json"), bytes);
    const auto content = loadDocument(path);
    ASSERT_TRUE(content);
    const QString copy = folder.path(QStringLiteral("copia.json"));
    ASSERT_TRUE(saveDocument(copy, *content));
    EXPECT_EQ(TemporaryFolder::contents(copy), bytes);
}

} // namespace
} // namespace quelm
