#pragma once

#include "Quelm/Foundation/Appearance.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <expected>
#include <optional>

namespace quelm {

/// What the command line asks for.
struct LaunchArguments {
    enum class Task : std::uint8_t { openWindows, capture, showHelp, showVersion };

    Task task = Task::openWindows;
    /// Paths, also of those given as addresses (file://), in the order given; exactly one for a capture.
    QStringList files;
    QString capturePath;
    /// Device pixels a logical pixel of a capture; above 0 and at most 8.
    double captureScale = 1;
    /// Absent: that of the platform.
    std::optional<Appearance> appearance;

    /// From the arguments without the program's name; the error is a sentence for the user.
    static std::expected<LaunchArguments, QString> parse(const QStringList& arguments);

    /// What `--help` prints.
    static QString usage();
};

} // namespace quelm
