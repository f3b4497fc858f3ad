#include "Quelm/Application/Session.h"

#include "Quelm/Foundation/Preferences.h"

#include <QSettings>

namespace quelm::Session {

namespace {

constexpr QLatin1String key("session");

} // namespace

void store(const QStringList& paths) {
    auto store = Preferences::openStore();
    const QStringList kept = paths.mid(0, maximumCount);
    // What is not changed is not written.
    if (kept == store->value(key).toStringList())
        return;
    if (kept.isEmpty())
        store->remove(key);
    else
        store->setValue(key, kept);
    Preferences::writeInBackground(std::move(store));
}

QStringList take() {
    const QStringList paths = Preferences::openStore()->value(key).toStringList().mid(0, maximumCount);
    store({});
    return paths;
}

} // namespace quelm::Session
