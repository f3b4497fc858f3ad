#pragma once

#include "Quelm/Foundation/SemanticColors.h"

#include <QtGlobal>

namespace quelm {

/// How characters are drawn, besides the one font of their text.
struct TextAttributes {
    ColorRole foreground = ColorRole::text;

    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

/// Adjacent characters with the same attributes.
struct AttributeRun {
    qint64 length = 0;
    TextAttributes attributes;
    /// Whoever gave the attributes vouches that they are right for the characters of the run and those next to it; an
    /// edit of either ends that.
    bool isSettled = false;

    friend bool operator==(const AttributeRun&, const AttributeRun&) = default;
};

} // namespace quelm
