#include "Quelm/Foundation/Preferences.h"

#include "Quelm/Foundation/Disposal.h"
#include "TextCore/Check.h"

#include <QSettings>
#include <QVariant>

#include <algorithm>

namespace quelm::Preferences {

namespace {

constexpr QLatin1String indentKey("indent");
constexpr QLatin1String sortKeysKey("sortKeys");
constexpr QLatin1String initialModeKey("initialMode");

QString& overridePath() {
    static QString path;
    return path;
}

std::string storedText(QLatin1String key) {
    return openStore()->value(key).toString().toStdString();
}

void store(QLatin1String key, std::string_view text) {
    openStore()->setValue(key, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

} // namespace

std::unique_ptr<QSettings> openStore() {
    if (!overridePath().isEmpty())
        return std::make_unique<QSettings>(overridePath(), QSettings::IniFormat);
    return std::make_unique<QSettings>(QSettings::UserScope, QStringLiteral("Quelm"), QStringLiteral("Quelm"));
}

std::string_view rawValue(InitialMode mode) {
    constexpr std::array<std::string_view, allInitialModes.size()> names{"automatic", "tree", "text"};
    return names[static_cast<std::size_t>(mode)];
}

JSONStyle::Indent indent() {
    return JSONStyle::indentFromRawValue(storedText(indentKey)).value_or(JSONStyle::Indent::twoSpaces);
}

void setIndent(JSONStyle::Indent indent) {
    store(indentKey, JSONStyle::rawValue(indent));
}

bool sortsKeys() {
    // A store of text gives "true", a native one a Boolean; any other text is not a yes.
    return openStore()->value(sortKeysKey).toString() == QLatin1String("true");
}

void setSortsKeys(bool sortsKeys) {
    openStore()->setValue(sortKeysKey, sortsKeys);
}

void writeInBackground(std::unique_ptr<QSettings> store) {
    store->moveToThread(nullptr);
    runDisposal([store = std::shared_ptr<QSettings>(std::move(store))]() mutable { store.reset(); });
}

InitialMode initialMode() {
    const std::string text = storedText(initialModeKey);
    const auto* found = std::ranges::find(allInitialModes, text, [](InitialMode mode) { return rawValue(mode); });
    return found == allInitialModes.end() ? InitialMode::automatic : *found;
}

void setInitialMode(InitialMode mode) {
    store(initialModeKey, rawValue(mode));
}

JSONStyle preferredStyle() {
    return JSONStyle::pretty(indent(), sortsKeys());
}

FileOverride::FileOverride(const QString& path) {
    require(overridePath().isEmpty(), "one override of the preferences at a time");
    require(!path.isEmpty(), "the file of the preferences has a name");
    overridePath() = path;
}

FileOverride::~FileOverride() {
    overridePath().clear();
}

} // namespace quelm::Preferences
