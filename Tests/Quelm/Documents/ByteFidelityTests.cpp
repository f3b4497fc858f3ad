#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Documents/DocumentSaving.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/Documents/EditedDocumentTest.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>
#include <ostream>

namespace quelm {
namespace {

using Preferences::InitialMode;

struct FidelityCase {
    const char* name;
    std::string bytes;

    friend std::ostream& operator<<(std::ostream& stream, const FidelityCase& each) { return stream << each.name; }
};

std::vector<FidelityCase> fidelityCases() {
    return {
        {"empty", ""},
        {"white space alone", " \r\n\t "},
        {"byte-order mark", "\xEF\xBB\xBF{\"a\": 1}\n"},
        {"byte-order mark alone", "\xEF\xBB\xBF"},
        {"CRLF", "{\r\n  \"a\": [1,\r\n 2]\r\n}\r\n"},
        {"lone CR", "{\r\"a\":\r1}\r"},
        {"mixed ends of lines", "[\r\n1,\n2,\r3]\r\n\n"},
        {"no end of the last line", "{\"a\": 1}"},
        {"spaces at the end", "[1]   \n\n\n"},
        {"spellings of numbers", "[1.0, 1.00, 1e3, 1E+3, -0, 0.10, 123456789012345678901234567890, 1e400]"},
        {"duplicate keys", "{\"a\": 1, \"a\": 2, \"a\": {\"a\": 3}}"},
        {"escapes", "[\"\\u00e1 \\/ / \\b\\f\\n\\r\\t \\ud83d\\ude00 \\ud800 \\u0000\", \"á😀\"]"},
        {"uneven layout", "{ \"a\":1,\n\t\"b\" :  [ ],\"c\":{}\n   , \"d\" : null}"},
        {"invalid", "{\"a\": 1,}\r\n"},
        {"cut off", "[1, 2, {\"a\""},
        {"no JSON", "hola\r\nmundo \x01\x7f\n"},
        {"null bytes", std::string("[1\0, \0]", 8)},
        {"other separators", "[\"\u2028\u2029\u0085\"]"},
        {"decomposed letters", "[\"e\u0301\", \"é\"]"},
        {"deep", nestedArrays(5'000)},
        {"one long line", arrayOfZeros(200'000)},
    };
}

class ByteFidelityTests : public testing::TestWithParam<FidelityCase> {
protected:
    /// Opens the file as the program does.
    void open(const QString& path) {
        auto loaded = loadDocument(path);
        ASSERT_TRUE(loaded) << loaded.error().message.toStdString();
        document.apply(std::move(loaded->content));
        if (document.mode() == EditorMode::text)
            document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    JSONDocument document;
};

TEST_P(ByteFidelityTests, SavingWhatWasOpenedWritesTheSameBytes) {
    for (const InitialMode mode : {InitialMode::tree, InitialMode::text}) {
        Preferences::setInitialMode(mode);
        const QString path = folder.write(QStringLiteral("a.json"), GetParam().bytes);
        open(path);
        const QString copy = folder.path(QStringLiteral("copia.json"));
        for (const QString& target : {path, copy}) {
            const auto saved = saveDocument(target, document.snapshot());
            ASSERT_TRUE(saved);
            EXPECT_TRUE(TemporaryFolder::contents(target) == GetParam().bytes);
            EXPECT_EQ(saved->checksum, ContentChecksum::of(GetParam().bytes));
        }
        document.dropTextBuffer();
    }
}

TEST_P(ByteFidelityTests, AnEditOfTheTextChangesOnlyWhatWasTyped) {
    Preferences::setInitialMode(InitialMode::text);
    const QString path = folder.write(QStringLiteral("a.json"), GetParam().bytes);
    open(path);
    TextStorage& buffer = *document.textBuffer();
    buffer.replaceCharacters({buffer.length(), 0}, QStringLiteral("ñ"));
    document.noteTextBufferEdited();
    const auto middle = buffer.text().summaryBeforeUTF16(buffer.length() / 2);
    buffer.replaceCharacters({middle.utf16, 0}, QStringLiteral(" "));
    document.noteTextBufferEdited();

    std::string expected = GetParam().bytes + "ñ";
    expected.insert(static_cast<std::size_t>(middle.bytes), " ");
    ASSERT_TRUE(saveDocument(path, document.snapshot()));
    EXPECT_TRUE(TemporaryFolder::contents(path) == expected);
}

INSTANTIATE_TEST_SUITE_P(Files, ByteFidelityTests, testing::ValuesIn(fidelityCases()));

} // namespace
} // namespace quelm
