#include "Quelm/Application/WindowPlaces.h"

#include "Quelm/Foundation/Preferences.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QStringList>
#include <QWidget>

#include <algorithm>
#include <array>
#include <limits>

namespace quelm {

namespace {

constexpr QLatin1String lastKey("lastWindow");
constexpr QLatin1String filesKey("fileWindows");
constexpr QLatin1String maximizedMark("max");

/// Far beyond any screen: what is stored may have been written by anybody.
constexpr int farthest = 100'000;

/// What the desktop puts around a window.
constexpr int frameHeight = 32;

QString textOf(const WindowPlace& place) {
    const QRect& area = place.area;
    const QString text = QStringLiteral("%1 %2 %3 %4").arg(area.x()).arg(area.y()).arg(area.width()).arg(area.height());
    return place.isMaximized ? text + u' ' + maximizedMark : text;
}

std::optional<WindowPlace> placeOf(const QString& text) {
    const QStringList words = text.split(u' ');
    if (words.size() < 4 || words.size() > 5 || (words.size() == 5 && words[4] != maximizedMark))
        return std::nullopt;
    std::array<int, 4> numbers{};
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        bool isNumber = false;
        numbers[index] = words[static_cast<qsizetype>(index)].toInt(&isNumber);
        if (!isNumber || numbers[index] < -farthest || numbers[index] > farthest)
            return std::nullopt;
    }
    const auto [x, y, width, height] = numbers;
    if (width < 1 || height < 1)
        return std::nullopt;
    return WindowPlace{QRect(x, y, width, height), words.size() == 5};
}

/// The screen that has most of the area; the first one when none has any.
QScreen* screenOf(const QRect& area) {
    const auto shared = [&](const QScreen* screen) {
        const QRect common = screen->availableGeometry().intersected(area);
        return common.isEmpty() ? 0 : qint64{common.width()} * common.height();
    };
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto best = std::ranges::max_element(screens, {}, shared);
    return best == screens.end() ? nullptr : shared(*best) > 0 ? *best : QGuiApplication::primaryScreen();
}

QRect roomOn(const QScreen& screen) {
    return screen.availableGeometry().adjusted(0, frameHeight, 0, 0);
}

/// The area within the room, moved and made smaller as little as that needs.
QRect movedInto(const QRect& room, QRect area) {
    area.setSize(area.size().boundedTo(room.size()));
    area.moveLeft(std::clamp(area.left(), room.left(), room.left() + room.width() - area.width()));
    area.moveTop(std::clamp(area.top(), room.top(), room.top() + room.height() - area.height()));
    return area;
}

void setMaximized(QWidget& window, bool isMaximized) {
    const Qt::WindowStates state = window.windowState();
    window.setWindowState(isMaximized ? state | Qt::WindowMaximized : state & ~Qt::WindowMaximized);
}

} // namespace

WindowPlace WindowPlace::of(const QWidget& window) {
    return {window.isMaximized() || window.isFullScreen() ? window.normalGeometry() : window.geometry(),
            window.isMaximized()};
}

void WindowPlace::applySize(QWidget& window) const {
    window.resize(area.size().boundedTo(roomOn(*window.screen()).size()));
    setMaximized(window, isMaximized);
}

void WindowPlace::apply(QWidget& window) const {
    const QScreen* screen = screenOf(area);
    if (!screen)
        return;
    window.setGeometry(movedInto(roomOn(*screen), area));
    setMaximized(window, isMaximized);
}

namespace WindowPlaces {

// The files are a list of a path and its place in turns, the last one first.

std::optional<WindowPlace> last() {
    return placeOf(Preferences::openStore()->value(lastKey).toString());
}

std::optional<WindowPlace> of(const QString& path) {
    const QStringList files = Preferences::openStore()->value(filesKey).toStringList();
    for (qsizetype index = 0; index + 1 < files.size(); index += 2)
        if (files[index] == path)
            return placeOf(files[index + 1]);
    return std::nullopt;
}

void note(const std::optional<QString>& path, const WindowPlace& place) {
    auto store = Preferences::openStore();
    store->setValue(lastKey, textOf(place));
    if (path) {
        const QStringList before = store->value(filesKey).toStringList();
        QStringList files{*path, textOf(place)};
        for (qsizetype index = 0; index + 1 < before.size() && files.size() < 2 * maximumCount; index += 2)
            if (before[index] != *path)
                files += before.mid(index, 2);
        store->setValue(filesKey, files);
    }
    Preferences::writeInBackground(std::move(store));
}

} // namespace WindowPlaces

} // namespace quelm
