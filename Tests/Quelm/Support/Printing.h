#pragma once

#include <QString>

#include <ostream>

/// Lets failed expectations print texts instead of bytes.
// NOLINTNEXTLINE(readability-identifier-naming): the name that GoogleTest looks for.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
