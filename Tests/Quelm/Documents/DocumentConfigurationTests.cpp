#include "Quelm/Documents/DocumentConfiguration.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(DocumentConfigurationTests, ANewDocumentHasNoFileAndNoTitle) {
    const DocumentConfiguration configuration;
    EXPECT_EQ(configuration.fileLocation(), std::nullopt);
    EXPECT_EQ(configuration.baseName(), QStringLiteral("Sin título"));
    EXPECT_EQ(configuration.displayName(), QStringLiteral("Sin título"));
}

TEST(DocumentConfigurationTests, TheBaseNameIsTheFileNameWithoutItsExtension) {
    const auto baseName = [](const char* path) { return DocumentConfiguration(QString::fromUtf8(path)).baseName(); };
    EXPECT_EQ(baseName("/datos/año.json"), QStringLiteral("año"));
    EXPECT_EQ(baseName("/datos/copia.2.json"), QStringLiteral("copia.2"));
    EXPECT_EQ(baseName("/datos/sin extensión"), QStringLiteral("sin extensión"));
    EXPECT_EQ(baseName("/datos/.json"), QStringLiteral(".json"));
}

TEST(DocumentConfigurationTests, AnotherLocationIsAnnouncedTheSameOneIsNot) {
    DocumentConfiguration configuration(QStringLiteral("/a.json"));
    QSignalSpy changes(&configuration, &DocumentConfiguration::fileLocationChanged);
    configuration.setFileLocation(QStringLiteral("/a.json"));
    EXPECT_EQ(changes.count(), 0);
    configuration.setFileLocation(QStringLiteral("/b.json"));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(configuration.displayName(), QStringLiteral("b.json"));
}

} // namespace
} // namespace quelm
