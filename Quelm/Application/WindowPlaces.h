#pragma once

#include <QRect>
#include <QString>

#include <optional>

class QWidget;

namespace quelm {

/// Where a window is on the screens, and how large.
struct WindowPlace {
    /// Without the desktop's frame, when it is not maximised; in logical points.
    QRect area;
    bool isMaximized = false;

    static WindowPlace of(const QWidget& window);

    /// Gives the window its size, as far as its screen has room, and leaves the position to the desktop.
    void applySize(QWidget& window) const;
    /// Puts the window there, or to where it can be seen.
    void apply(QWidget& window) const;

    friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

} // namespace quelm

/// The places of the windows that were closed last, kept in the per-user store. For the main thread.
namespace quelm::WindowPlaces {

/// Of so many files.
inline constexpr qsizetype maximumCount = 50;

/// That of the window closed last, for a new one.
std::optional<WindowPlace> last();
/// That of the window which the file had; its absolute path.
std::optional<WindowPlace> of(const QString& path);

/// A window closes; without a path it had no file.
void note(const std::optional<QString>& path, const WindowPlace& place);

} // namespace quelm::WindowPlaces
