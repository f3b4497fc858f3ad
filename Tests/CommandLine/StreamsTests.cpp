#include "CommandLine/HelpText.h"
#include "Tests/CommandLine/CommandLineProcess.h"
#include "Tests/CommandLine/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Result = CommandLineProcess::Result;
using Stream = CommandLineProcess::Stream;

const std::string usage(helpText::usage());

TEST(Streams, HelpAndVersionGoToStandardOutput) {
    EXPECT_EQ(runCommandLine({"--help"}), (Result{0, std::string(helpText::full()), ""}));
    EXPECT_EQ(runCommandLine({"format", "--help"}), (Result{0, std::string(helpText::full()), ""}));
    EXPECT_EQ(runCommandLine({"--version"}), (Result{0, "quelm-cli " QUELM_VERSION "\n", ""}));
}

TEST(Streams, HelpBeginsWithTheUsageAndNamesEveryOption) {
    EXPECT_TRUE(helpText::full().starts_with(helpText::usage()));
    for (const char* word : {"check", "format", "compact", "--indent", "--sort-keys", "-o", "twoSpaces"})
        EXPECT_NE(helpText::full().find(word, usage.size()), std::string_view::npos) << word;
}

TEST(Streams, WrongArgumentsShowTheUsageOnStandardError) {
    EXPECT_EQ(runCommandLine({}), (Result{2, "", "quelm-cli: Falta una orden\n" + usage}));
    EXPECT_EQ(runCommandLine({"check"}), (Result{2, "", "quelm-cli: Falta el archivo\n" + usage}));
    EXPECT_EQ(runCommandLine({"format", "--color", "a"}),
              (Result{2, "", "quelm-cli: La orden 'format' no tiene la opción '--color'\n" + usage}));
}

TEST(Streams, AnOutputWithoutSpaceIsAFailure) {
    const Result expected{2, "", "salida estándar: No se puede escribir: no queda espacio\n"};
    for (std::vector<std::string> arguments :
         std::vector<std::vector<std::string>>{{"check", "-"}, {"format", "-"}, {"compact", "-"}, {"--help"}}) {
        const CommandLineProcess process{
            .arguments = std::move(arguments), .input = "[1]", .outputStream = Stream::full};
        EXPECT_EQ(process.run(), expected);
    }
}

TEST(Streams, AClosedOutputIsAFailure) {
    const Result expected{2, "", "salida estándar: No se puede escribir: no está abierto\n"};
    for (const char* command : {"check", "format", "compact"}) {
        const CommandLineProcess process{.arguments = {command, "-"}, .input = "[1]", .outputStream = Stream::closed};
        EXPECT_EQ(process.run(), expected);
    }
}

TEST(Streams, AClosedOutputDoesNotMatterWhenNothingIsWrittenToIt) {
    const TemporaryFolder folder;
    const CommandLineProcess process{
        .arguments = {"compact", "-o", folder.path("a.json"), "-"}, .input = "[ 1 ]", .outputStream = Stream::closed};
    EXPECT_EQ(process.run(), (Result{0, "", ""}));
    EXPECT_EQ(folder.read("a.json"), "[1]");
}

TEST(Streams, AnOutputThatNobodyReadsEndsTheProgramQuietly) {
    const std::string text = "[\"" + std::string(200'000, 'x') + "\"]";
    for (const char* command : {"check", "format", "compact"}) {
        const CommandLineProcess process{.arguments = {command, "-"}, .input = text, .outputStream = Stream::broken};
        EXPECT_EQ(process.run(), (Result{2, "", ""}));
    }
}

TEST(Streams, AClosedInputCannotBeRead) {
    const CommandLineProcess process{.arguments = {"check", "-"}, .inputStream = Stream::closed};
    EXPECT_EQ(process.run(), (Result{2, "", "-: No se puede leer: no está abierto\n"}));
}

TEST(Streams, WithoutInputAndOutputStreamsAFileIsStillRewritten) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "[ 1 ]");
    const CommandLineProcess process{
        .arguments = {"compact", "-o", path, path}, .inputStream = Stream::closed, .outputStream = Stream::closed};
    EXPECT_EQ(process.run(), (Result{0, "", ""}));
    EXPECT_EQ(folder.read("a.json"), "[1]");
}

} // namespace
} // namespace quelm
