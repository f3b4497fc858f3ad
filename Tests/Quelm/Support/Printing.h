#pragma once

#include <QString>

#include <ostream>

/// Lets failed expectations print texts instead of bytes.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
