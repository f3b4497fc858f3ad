#pragma once

#include "Quelm/TextEngine/TextRange.h"
#include "Quelm/TextEngine/TextSelection.h"

#include <cstdint>

namespace quelm {

class TextStorage;

/// What a selection that is made with the mouse consists of: a click, a double click and a triple click begin one each.
enum class SelectionGranularity : std::uint8_t { character, word, line };

/// The unit at a place: nothing but the place for characters, else a whole word, or a whole line with its line feed.
TextRange unitAt(const TextStorage& storage, SelectionGranularity granularity, qint64 offset);

/// From the unit that the mouse was pressed at to the one that it is at now, both wholly, the caret at the latter.
TextSelection selectionBetween(TextRange pressed, TextRange current);

} // namespace quelm
