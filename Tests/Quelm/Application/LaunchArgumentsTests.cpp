#include "Quelm/Application/LaunchArguments.h"
#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Task = LaunchArguments::Task;

std::expected<LaunchArguments, QString> parse(std::initializer_list<const char*> arguments) {
    QStringList list;
    for (const char* argument : arguments)
        list += QString::fromUtf8(argument);
    return LaunchArguments::parse(list);
}

QString errorOf(std::initializer_list<const char*> arguments) {
    const auto parsed = parse(arguments);
    return parsed ? QString() : parsed.error();
}

TEST(LaunchArgumentsTests, WithoutArgumentsThereAreNoFiles) {
    const auto arguments = parse({});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->task, Task::openWindows);
    EXPECT_TRUE(arguments->files.isEmpty());
    EXPECT_EQ(arguments->appearance, std::nullopt);
}

TEST(LaunchArgumentsTests, FilesKeepTheirOrder) {
    EXPECT_EQ(parse({"b.json", "a.json"})->files, QStringList({QStringLiteral("b.json"), QStringLiteral("a.json")}));
}

TEST(LaunchArgumentsTests, AfterTwoDashesEverythingIsAFile) {
    EXPECT_EQ(parse({"--", "--help", "-"})->files, QStringList({QStringLiteral("--help"), QStringLiteral("-")}));
}

TEST(LaunchArgumentsTests, ACaptureNamesItsPictureAndScale) {
    const auto arguments = parse({"--capture", "a.png", "--scale", "1.5", "a.json", "--appearance", "dark"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->task, Task::capture);
    EXPECT_EQ(arguments->capturePath, QStringLiteral("a.png"));
    EXPECT_EQ(arguments->captureScale, 1.5);
    EXPECT_EQ(arguments->files, QStringList{QStringLiteral("a.json")});
    EXPECT_EQ(arguments->appearance, Appearance::dark);
}

TEST(LaunchArgumentsTests, HelpAndVersionAreTasks) {
    EXPECT_EQ(parse({"--help"})->task, Task::showHelp);
    EXPECT_EQ(parse({"-h"})->task, Task::showHelp);
    EXPECT_EQ(parse({"--version"})->task, Task::showVersion);
    EXPECT_EQ(parse({"-v"})->task, Task::showVersion);
}

TEST(LaunchArgumentsTests, WhatIsWrongIsToldInWords) {
    EXPECT_EQ(errorOf({"--fast"}), QStringLiteral("No existe la opción --fast."));
    EXPECT_EQ(errorOf({"--capture"}), QStringLiteral("A la opción --capture le falta su valor."));
    EXPECT_EQ(errorOf({"--capture", "a.png"}), QStringLiteral("Una captura necesita exactamente un archivo."));
    EXPECT_EQ(errorOf({"--capture", "a.png", "a", "b"}),
              QStringLiteral("Una captura necesita exactamente un archivo."));
    for (const char* scale : {"0", "-1", "9", "dos", ""})
        EXPECT_EQ(errorOf({"--scale", scale}),
                  QStringLiteral("La escala tiene que ser un número mayor que 0 y no mayor que 8, no «%1».")
                      .arg(QString::fromUtf8(scale)));
    EXPECT_EQ(errorOf({"--appearance", "azul"}),
              QStringLiteral("La apariencia tiene que ser light o dark, no «azul»."));
}

TEST(LaunchArgumentsTests, FilesMayBeGivenAsAddresses) {
    const auto arguments = LaunchArguments::parse(
        {QStringLiteral("file:///tmp/a%20%C3%B1.json"), QStringLiteral("file://otra/a.json"), QStringLiteral("file:a")});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->files[0], QStringLiteral("/tmp/a ñ.json"));
    EXPECT_EQ(arguments->files[2], QStringLiteral("file:a"));
}

} // namespace
} // namespace quelm
