#include "CommandLine/Options.h"

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;

std::expected<Command, UsageError> parse(const std::vector<std::string_view>& arguments) {
    return parseCommand(arguments);
}

std::string usageMessage(const std::vector<std::string_view>& arguments) {
    const auto command = parse(arguments);
    return command ? "(accepted)" : command.error().message;
}

Command rewrite(JSONStyle style, std::string input, std::optional<std::string> output = std::nullopt) {
    return RewriteCommand{style, std::move(input), std::move(output)};
}

TEST(Options, CheckTakesFilesInTheirOrder) {
    EXPECT_EQ(parse({"check", "b.json", "-", "a.json"}), Command(CheckCommand{{"b.json", "-", "a.json"}}));
}

TEST(Options, FormatUsesTwoSpacesAndTheOrderOfTheDocumentUnlessAskedOtherwise) {
    EXPECT_EQ(parse({"format", "a.json"}), rewrite(JSONStyle::pretty(Indent::twoSpaces, false), "a.json"));
}

TEST(Options, FormatTakesEveryIndentByItsName) {
    EXPECT_EQ(parse({"format", "--indent", "twoSpaces", "a"}),
              rewrite(JSONStyle::pretty(Indent::twoSpaces, false), "a"));
    EXPECT_EQ(parse({"format", "--indent", "fourSpaces", "a"}),
              rewrite(JSONStyle::pretty(Indent::fourSpaces, false), "a"));
    EXPECT_EQ(parse({"format", "--indent", "tab", "a"}), rewrite(JSONStyle::pretty(Indent::tab, false), "a"));
    EXPECT_EQ(parse({"format", "--indent=tab", "a"}), rewrite(JSONStyle::pretty(Indent::tab, false), "a"));
}

TEST(Options, OptionsMayStandBeforeAndAfterTheFile) {
    const auto expected = rewrite(JSONStyle::pretty(Indent::tab, true), "a.json", "b.json");
    EXPECT_EQ(parse({"format", "--indent", "tab", "--sort-keys", "-o", "b.json", "a.json"}), expected);
    EXPECT_EQ(parse({"format", "a.json", "-o", "b.json", "--sort-keys", "--indent", "tab"}), expected);
}

TEST(Options, TheLastOfARepeatedOptionCounts) {
    EXPECT_EQ(parse({"format", "--indent", "tab", "-o", "b", "--indent", "fourSpaces", "-o", "c", "a"}),
              rewrite(JSONStyle::pretty(Indent::fourSpaces, false), "a", "c"));
}

TEST(Options, CompactWritesToAFileOrToStandardOutput) {
    EXPECT_EQ(parse({"compact", "a"}), rewrite(JSONStyle::compact(), "a"));
    EXPECT_EQ(parse({"compact", "-o", "b", "a"}), rewrite(JSONStyle::compact(), "a", "b"));
    EXPECT_EQ(parse({"compact", "-o", "-", "a"}), rewrite(JSONStyle::compact(), "a"));
}

TEST(Options, WhatFollowsTwoDashesIsAFile) {
    EXPECT_EQ(parse({"check", "--", "-o", "--", "--help"}), Command(CheckCommand{{"-o", "--", "--help"}}));
}

TEST(Options, HelpAndVersionAreCommandsOfTheirOwn) {
    EXPECT_EQ(parse({"--help"}), Command(HelpCommand{}));
    EXPECT_EQ(parse({"-h"}), Command(HelpCommand{}));
    EXPECT_EQ(parse({"--version"}), Command(VersionCommand{}));
}

TEST(Options, HelpMayBeAskedForAfterACommandWithoutFiles) {
    EXPECT_EQ(parse({"check", "--help"}), Command(HelpCommand{}));
    EXPECT_EQ(parse({"format", "-h"}), Command(HelpCommand{}));
    EXPECT_EQ(parse({"compact", "a", "b", "--help"}), Command(HelpCommand{}));
}

TEST(Options, WrongArgumentsAreToldInSpanish) {
    EXPECT_EQ(usageMessage({}), "Falta una orden");
    EXPECT_EQ(usageMessage({"validar", "a"}), "No existe la orden 'validar'");
    EXPECT_EQ(usageMessage({""}), "No existe la orden ''");
    EXPECT_EQ(usageMessage({"-"}), "No existe la orden '-'");
    EXPECT_EQ(usageMessage({"--sort-keys"}), "No existe la opción '--sort-keys'");
    EXPECT_EQ(usageMessage({"check"}), "Falta el archivo");
    EXPECT_EQ(usageMessage({"compact", "-o", "b"}), "Falta el archivo");
    EXPECT_EQ(usageMessage({"format", "a", "b"}), "La orden 'format' lee un solo archivo y sobra 'b'");
    EXPECT_EQ(usageMessage({"compact", "-", "-"}), "La orden 'compact' lee un solo archivo y sobra '-'");
    EXPECT_EQ(usageMessage({"format", "a", "-o"}), "Falta el valor de la opción '-o'");
    EXPECT_EQ(usageMessage({"format", "a", "--indent"}), "Falta el valor de la opción '--indent'");
}

TEST(Options, AnIndentIsNamedExactly) {
    EXPECT_EQ(usageMessage({"format", "--indent", "TwoSpaces", "a"}),
              "No existe la sangría 'TwoSpaces'; puede ser twoSpaces, fourSpaces o tab");
    EXPECT_EQ(usageMessage({"format", "--indent=", "a"}),
              "No existe la sangría ''; puede ser twoSpaces, fourSpaces o tab");
    EXPECT_EQ(usageMessage({"format", "--indent", "4", "a"}),
              "No existe la sangría '4'; puede ser twoSpaces, fourSpaces o tab");
}

TEST(Options, ACommandRefusesTheOptionsOfOthers) {
    EXPECT_EQ(usageMessage({"check", "-o", "b", "a"}), "La orden 'check' no tiene la opción '-o'");
    EXPECT_EQ(usageMessage({"check", "--sort-keys", "a"}), "La orden 'check' no tiene la opción '--sort-keys'");
    EXPECT_EQ(usageMessage({"compact", "--indent", "tab", "a"}), "La orden 'compact' no tiene la opción '--indent'");
    EXPECT_EQ(usageMessage({"compact", "--indent=tab", "a"}), "La orden 'compact' no tiene la opción '--indent=tab'");
    EXPECT_EQ(usageMessage({"format", "--version", "a"}), "La orden 'format' no tiene la opción '--version'");
}

} // namespace
} // namespace quelm
