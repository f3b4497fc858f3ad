#include "Tests/CommandLine/CommandLineProcess.h"
#include "Tests/CommandLine/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quelm {
namespace {

using Result = CommandLineProcess::Result;

/// What `check` says of a text on standard input.
Result checkText(std::string text) {
    return CommandLineProcess{.arguments = {"check", "-"}, .input = std::move(text)}.run();
}

Result valid(const std::string& description) {
    return Result{0, "-: válido, " + description + "\n", ""};
}

Result invalid(const std::string& description) {
    return Result{1, "", "-: " + description + "\n"};
}

TEST(Check, CountsTheNodes) {
    EXPECT_EQ(checkText("12"), valid("1 nodo, compacto"));
    EXPECT_EQ(checkText("{}"), valid("1 nodo, compacto"));
    EXPECT_EQ(checkText("[1]"), valid("2 nodos, compacto"));
    EXPECT_EQ(checkText(R"({"a":[1,null,{"b":"c"}],"a":true})"), valid("7 nodos, compacto"));
}

TEST(Check, NamesTheStyle) {
    EXPECT_EQ(checkText("[\n  1\n]\n"), valid("2 nodos, 2 espacios"));
    EXPECT_EQ(checkText("[\n    1\n]\n"), valid("2 nodos, 4 espacios"));
    EXPECT_EQ(checkText("[\n\t1\n]\n"), valid("2 nodos, tabulador"));
    EXPECT_EQ(checkText("[1]\n"), valid("2 nodos, compacto"));
}

TEST(Check, TellsWhereAFileIsWrong) {
    EXPECT_EQ(checkText("{\n  \"a\": 1,\n  \"bbbbb\": 22 3\n}"), invalid("Línea 3, columna 15: Se esperaba ',' o '}'"));
    EXPECT_EQ(checkText("[\"é\", x]"), invalid("Línea 1, columna 7: Valor inesperado"));
}

TEST(Check, AnEmptyFileHasNoValue) {
    EXPECT_EQ(checkText(""), invalid("Línea 1, columna 1: Se esperaba un valor"));
    EXPECT_EQ(checkText("   "), invalid("Línea 1, columna 4: Se esperaba un valor"));
}

TEST(Check, BytesThatAreNotUTF8AreAnError) {
    EXPECT_EQ(checkText("[\"\xFF\"]"), invalid("Línea 1, columna 1: El archivo no está codificado en UTF-8"));
    EXPECT_EQ(checkText("[\"\xC3\"]"), invalid("Línea 1, columna 1: El archivo no está codificado en UTF-8"));
}

TEST(Check, AByteOrderMarkIsPartOfTheFile) {
    EXPECT_EQ(checkText("\xEF\xBB\xBF{}"), valid("1 nodo, compacto"));
    EXPECT_EQ(checkText("\xEF\xBB\xBF{x}"), invalid("Línea 1, columna 3: Se esperaba una clave entre comillas"));
}

TEST(Check, DeepNestingIsNoError) {
    const std::string text = std::string(200'000, '[') + std::string(200'000, ']');
    EXPECT_EQ(checkText(text), valid("200000 nodos, compacto"));
}

TEST(Check, AllFilesAreCheckedAndTheWorstDecides) {
    const TemporaryFolder folder;
    folder.write("bien.json", "[true]");
    folder.write("mal.json", "[true");
    const auto run = [&](std::vector<std::string> files) {
        files.insert(files.begin(), "check");
        return CommandLineProcess{.arguments = std::move(files), .folder = folder.path()}.run();
    };
    const std::string good = "bien.json: válido, 2 nodos, compacto\n";
    const std::string bad = "mal.json: Línea 1, columna 6: Falta ']' para cerrar el arreglo\n";
    const std::string missing = "no.json: No se puede leer: no existe\n";
    EXPECT_EQ(run({"bien.json", "bien.json"}), (Result{0, good + good, ""}));
    EXPECT_EQ(run({"mal.json", "bien.json"}), (Result{1, good, bad}));
    EXPECT_EQ(run({"no.json", "mal.json", "bien.json"}), (Result{2, good, missing + bad}));
    EXPECT_EQ(run({"mal.json", "no.json"}), (Result{2, "", bad + missing}));
}

TEST(Check, AFileThatCannotBeReadIsToldWithItsReason) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a", "1");
    EXPECT_EQ(runCommandLine({"check", folder.path()}),
              (Result{2, "", folder.path() + ": No se puede leer: es una carpeta\n"}));
    EXPECT_EQ(runCommandLine({"check", file + "/b"}),
              (Result{2, "", file + "/b: No se puede leer: una parte de la ruta no es una carpeta\n"}));
    EXPECT_EQ(runCommandLine({"check", ""}), (Result{2, "", ": No se puede leer: no existe\n"}));
}

TEST(Check, APipeIsAFileLikeAnyOther) {
    const TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    std::thread writing([&] {
        const int descriptor = ::open(path.c_str(), O_WRONLY);
        EXPECT_EQ(::write(descriptor, "[1,2]", 5), 5);
        ::close(descriptor);
    });
    const Result result = runCommandLine({"check", path});
    writing.join();
    EXPECT_EQ(result, (Result{0, path + ": válido, 3 nodos, compacto\n", ""}));
}

TEST(Check, AFileNamedLikeStandardInputIsReachedByItsFolder) {
    const TemporaryFolder folder;
    folder.write("-", "null");
    const CommandLineProcess process{.arguments = {"check", "./-"}, .input = "x", .folder = folder.path()};
    EXPECT_EQ(process.run(), (Result{0, "./-: válido, 1 nodo, compacto\n", ""}));
}

} // namespace
} // namespace quelm
