#include "Tests/CommandLine/CommandLineProcess.h"
#include "Tests/CommandLine/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quelm {
namespace {

using Result = CommandLineProcess::Result;
using testing::ElementsAre;

const std::string document = R"({"b":[1.50,"ñ\n"],"a":{},"b":null})";

Result rewrite(std::vector<std::string> arguments, std::string input = document) {
    arguments.push_back("-");
    return CommandLineProcess{.arguments = std::move(arguments), .input = std::move(input)}.run();
}

Result success(std::string output) {
    return Result{0, std::move(output), ""};
}

TEST(Format, WritesOneMemberALine) {
    EXPECT_EQ(rewrite({"format"}), success("{\n"
                                           "  \"b\": [\n"
                                           "    1.50,\n"
                                           "    \"ñ\\n\"\n"
                                           "  ],\n"
                                           "  \"a\": {},\n"
                                           "  \"b\": null\n"
                                           "}\n"));
}

TEST(Format, IndentsAsAsked) {
    EXPECT_EQ(rewrite({"format", "--indent", "fourSpaces"}, "[[1]]"), success("[\n    [\n        1\n    ]\n]\n"));
    EXPECT_EQ(rewrite({"format", "--indent", "tab"}, "[[1]]"), success("[\n\t[\n\t\t1\n\t]\n]\n"));
}

TEST(Format, SortsKeysWhenAsked) {
    EXPECT_EQ(rewrite({"format", "--sort-keys"}, R"({"b":1,"a":2,"B":3,"b":0})"),
              success("{\n  \"B\": 3,\n  \"a\": 2,\n  \"b\": 1,\n  \"b\": 0\n}\n"));
}

TEST(Compact, WritesNoSpaceThatIsNotPartOfAText) {
    EXPECT_EQ(rewrite({"compact"}, "{ \"a b\" : [ 1 ,\r\n\t2 ] }\n"), success(R"({"a b":[1,2]})"));
}

TEST(Compact, LeavesAByteOrderMarkOut) {
    EXPECT_EQ(rewrite({"compact"}, "\xEF\xBB\xBF[1]"), success("[1]"));
}

TEST(Rewriting, AMegabyteThroughPipesArrivesWhole) {
    std::string text = "[0";
    for (int number = 1; text.size() < 1'500'000; ++number)
        text += ',' + std::to_string(number);
    text += ']';
    const Result result = rewrite({"compact"}, text);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output == text);
}

TEST(Rewriting, ABadInputWritesNothing) {
    const TemporaryFolder folder;
    const std::string input = folder.write("mal.json", "[1,]");
    const std::string output = folder.write("salida.json", "old");
    const Result expected{1, "", input + ": Línea 1, columna 4: Valor inesperado\n"};
    for (const char* command : {"format", "compact"}) {
        EXPECT_EQ(runCommandLine({command, input}), expected);
        EXPECT_EQ(runCommandLine({command, "-o", output, input}), expected);
        EXPECT_EQ(runCommandLine({command, "-o", input, input}), expected);
        EXPECT_EQ(runCommandLine({command, "-o", folder.path("nuevo.json"), input}), expected);
    }
    EXPECT_EQ(folder.read("salida.json"), "old");
    EXPECT_EQ(folder.read("mal.json"), "[1,]");
    EXPECT_THAT(folder.names(), ElementsAre("mal.json", "salida.json"));
}

TEST(Rewriting, AnUnreadableInputWritesNothing) {
    const TemporaryFolder folder;
    const std::string output = folder.write("salida.json", "old");
    EXPECT_EQ(runCommandLine({"format", "-o", output, folder.path("no.json")}),
              (Result{2, "", folder.path("no.json") + ": No se puede leer: no existe\n"}));
    EXPECT_EQ(folder.read("salida.json"), "old");
}

TEST(Rewriting, TheOutputMayBeTheInput) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "[ 1 ]");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    EXPECT_EQ(runCommandLine({"format", "-o", path, path}), success(""));
    EXPECT_EQ(folder.read("a.json"), "[\n  1\n]\n");
    EXPECT_EQ(runCommandLine({"compact", path, "-o", path}), success(""));
    EXPECT_EQ(folder.read("a.json"), "[1]");
    struct stat status{};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    EXPECT_THAT(folder.names(), ElementsAre("a.json"));
}

TEST(Rewriting, ASymbolicLinkIsFollowed) {
    const TemporaryFolder folder;
    folder.write("a.json", "[ 1 ]");
    ASSERT_EQ(::symlink("a.json", folder.path("enlace.json").c_str()), 0);
    const std::string link = folder.path("enlace.json");
    EXPECT_EQ(runCommandLine({"compact", "-o", link, link}), success(""));
    EXPECT_EQ(folder.read("a.json"), "[1]");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST(Rewriting, AnOutputThatCannotBeWrittenIsToldWithItsReason) {
    const TemporaryFolder folder;
    const std::string input = folder.write("a.json", "[1]");
    const std::string below = input + "/b.json";
    const std::string nowhere = folder.path("no/b.json");
    EXPECT_EQ(runCommandLine({"compact", "-o", below, input}),
              (Result{2, "", below + ": No se puede escribir: una parte de la ruta no es una carpeta\n"}));
    EXPECT_EQ(runCommandLine({"compact", "-o", nowhere, input}),
              (Result{2, "", nowhere + ": No se puede escribir: no existe\n"}));
    EXPECT_EQ(runCommandLine({"compact", "-o", folder.path(), input}),
              (Result{2, "", folder.path() + ": No se puede escribir: es una carpeta\n"}));
    EXPECT_EQ(runCommandLine({"compact", "-o", "/dev/full", input}),
              (Result{2, "", "/dev/full: No se puede escribir: no queda espacio\n"}));
    EXPECT_THAT(folder.names(), ElementsAre("a.json"));
}

TEST(Rewriting, AnOutputThatDoesNotFitLeavesTheFileAsItWas) {
    const TemporaryFolder folder;
    const std::string text = "[" + std::string(5000, ' ') + "\"" + std::string(5000, 'x') + "\"]";
    const std::string path = folder.write("a.json", text);
    const CommandLineProcess process{.arguments = {"compact", "-o", path, path}, .largestFile = 2000};
    EXPECT_EQ(process.run(), (Result{2, "", path + ": No se puede escribir: el archivo sería demasiado grande\n"}));
    EXPECT_EQ(folder.read("a.json"), text);
    EXPECT_THAT(folder.names(), ElementsAre("a.json"));
}

TEST(Rewriting, OutputToADashIsStandardOutput) {
    const TemporaryFolder folder;
    const CommandLineProcess process{
        .arguments = {"compact", "-o", "-", "-"}, .input = "[ 1 ]", .folder = folder.path()};
    EXPECT_EQ(process.run(), success("[1]"));
    EXPECT_THAT(folder.names(), ElementsAre());
}

} // namespace
} // namespace quelm
