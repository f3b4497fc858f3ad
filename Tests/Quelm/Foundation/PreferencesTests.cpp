#include "Quelm/Foundation/Preferences.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"

#include <QSettings>

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Preferences::InitialMode;

class PreferencesTests : public testing::Test {
protected:
    /// Stores a value behind the back of the functions, as another program would.
    void storeDirectly(const char* key, const QVariant& value) {
        QSettings(preferences.path(), QSettings::IniFormat).setValue(QLatin1String(key), value);
    }
    QVariant stored(const char* key) {
        return QSettings(preferences.path(), QSettings::IniFormat).value(QLatin1String(key));
    }

    TemporaryPreferences preferences;
};

TEST_F(PreferencesTests, NothingStoredReadsAsTheDefaults) {
    EXPECT_EQ(Preferences::indent(), JSONStyle::Indent::twoSpaces);
    EXPECT_FALSE(Preferences::sortsKeys());
    EXPECT_EQ(Preferences::initialMode(), InitialMode::automatic);
    EXPECT_EQ(Preferences::preferredStyle(), JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false));
}

TEST_F(PreferencesTests, EveryIndentIsStoredAsItsRawValueAndReadBack) {
    for (const JSONStyle::Indent indent : JSONStyle::allIndents) {
        Preferences::setIndent(indent);
        EXPECT_EQ(stored("indent").toString().toStdString(), JSONStyle::rawValue(indent));
        EXPECT_EQ(Preferences::indent(), indent);
    }
}

TEST_F(PreferencesTests, EveryInitialModeIsStoredAsItsRawValueAndReadBack) {
    for (const InitialMode mode : Preferences::allInitialModes) {
        Preferences::setInitialMode(mode);
        EXPECT_EQ(stored("initialMode").toString().toStdString(), Preferences::rawValue(mode));
        EXPECT_EQ(Preferences::initialMode(), mode);
    }
}

TEST_F(PreferencesTests, RawValuesAreTheNamesOfTheCases) {
    EXPECT_EQ(Preferences::rawValue(InitialMode::automatic), "automatic");
    EXPECT_EQ(Preferences::rawValue(InitialMode::tree), "tree");
    EXPECT_EQ(Preferences::rawValue(InitialMode::text), "text");
}

TEST_F(PreferencesTests, UnknownTextsReadAsTheDefaults) {
    for (const char* text : {"Tab", "TAB", "", " tab", "fourspaces", "4"}) {
        storeDirectly("indent", QLatin1String(text));
        EXPECT_EQ(Preferences::indent(), JSONStyle::Indent::twoSpaces) << text;
    }
    for (const char* text : {"Text", "", "tree ", "1"}) {
        storeDirectly("initialMode", QLatin1String(text));
        EXPECT_EQ(Preferences::initialMode(), InitialMode::automatic) << text;
    }
    for (const char* text : {"quizás", "", "no"}) {
        storeDirectly("sortKeys", QString::fromUtf8(text));
        EXPECT_FALSE(Preferences::sortsKeys()) << text;
    }
}

TEST_F(PreferencesTests, ThePreferredStyleTakesIndentAndOrderFromTheStore) {
    Preferences::setIndent(JSONStyle::Indent::tab);
    Preferences::setSortsKeys(true);
    EXPECT_EQ(stored("sortKeys").toBool(), true);
    EXPECT_EQ(Preferences::preferredStyle(), JSONStyle::pretty(JSONStyle::Indent::tab, true));
    Preferences::setSortsKeys(false);
    EXPECT_EQ(Preferences::preferredStyle(), JSONStyle::pretty(JSONStyle::Indent::tab, false));
}

TEST_F(PreferencesTests, AChangeFromOutsideCountsAtTheNextReading) {
    EXPECT_EQ(Preferences::indent(), JSONStyle::Indent::twoSpaces);
    storeDirectly("indent", QStringLiteral("fourSpaces"));
    storeDirectly("sortKeys", true);
    storeDirectly("initialMode", QStringLiteral("text"));
    EXPECT_EQ(Preferences::indent(), JSONStyle::Indent::fourSpaces);
    EXPECT_TRUE(Preferences::sortsKeys());
    EXPECT_EQ(Preferences::initialMode(), InitialMode::text);
}

} // namespace
} // namespace quelm
