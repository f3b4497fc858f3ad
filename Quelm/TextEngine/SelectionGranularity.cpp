#include "Quelm/TextEngine/SelectionGranularity.h"

#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextStorage.h"

namespace quelm {

TextRange unitAt(const TextStorage& storage, SelectionGranularity granularity, qint64 offset) {
    switch (granularity) {
    case SelectionGranularity::word:
        return boundaries::wordAt(storage.text(), offset);
    case SelectionGranularity::line:
        return storage.lineRange({offset, 0});
    case SelectionGranularity::character:
        break;
    }
    return {offset, 0};
}

TextSelection selectionBetween(TextRange pressed, TextRange current) {
    if (current.location < pressed.location)
        return {pressed.end(), current.location};
    return {pressed.location, std::max(pressed.end(), current.end())};
}

} // namespace quelm
