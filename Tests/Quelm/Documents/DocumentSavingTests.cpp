#include "Quelm/Documents/DocumentSaving.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

JSONContent contentOf(std::string_view text) {
    return JSONContent::fromText(TextRope(SharedText(text)));
}

class DocumentSavingTests : public testing::Test {
protected:
    std::string saved(const JSONContent& snapshot) const {
        const QString path = folder.path(QStringLiteral("a.json"));
        EXPECT_TRUE(saveDocument(path, snapshot));
        return TemporaryFolder::contents(path);
    }

    TemporaryFolder folder;
};

TEST_F(DocumentSavingTests, ATextIsSavedAsItIs) {
    EXPECT_EQ(saved(contentOf("[ 1 ]\r\n")), "[ 1 ]\r\n");
    EXPECT_EQ(saved(contentOf("[ 1")), "[ 1");
    EXPECT_EQ(saved(contentOf("")), "");
}

TEST_F(DocumentSavingTests, ATreeIsSavedInItsStyle) {
    for (const auto& style : {JSONStyle::compact(), JSONStyle::pretty(JSONStyle::Indent::tab, true)}) {
        JSONContent content = contentOf("{\"b\": [1], \"a\": \"ñ\"}");
        content.text.reset();
        content.style = style;
        EXPECT_EQ(saved(content), JSONDocument::fileContents(content).view());
    }
}

TEST_F(DocumentSavingTests, ALargeTreeIsSavedWhole) {
    const std::string text = arrayOfZeros(2'000'000);
    JSONContent content = contentOf(text);
    content.text.reset();
    content.style = JSONStyle::compact();
    EXPECT_TRUE(saved(content) == text);
}

TEST_F(DocumentSavingTests, ATreeThatCannotBeWrittenIsAnError) {
    JSONContent content = contentOf("[1]");
    content.text.reset();
    const auto result = saveDocument(folder.path(QStringLiteral("falta/a.json")), content);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().message,
              QStringLiteral("La carpeta «%1» no existe.").arg(folder.path(QStringLiteral("falta"))));
}

TEST_F(DocumentSavingTests, NeitherTextNorTreeIsAnEmptyFile) {
    EXPECT_EQ(saved(JSONContent()), "");
}

} // namespace
} // namespace quelm
