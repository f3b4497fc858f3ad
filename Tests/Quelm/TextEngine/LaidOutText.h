#pragma once

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextLayout.h"

#include <QObject>
#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace quelm {

inline TextFont testFont() {
    return TextFont(monospacedFont(TextStyle::body));
}

/// A text storage and a layout that follows it.
struct LaidOutText {
    explicit LaidOutText(std::u16string_view text) : LaidOutText(TextRope::repairing(text)) {}
    explicit LaidOutText(const TextRope& text) : storage(text), layout(storage, testFont()) {
        QObject::connect(&storage, &TextStorage::didProcessEditing, &storage,
                         [this](EditedMask mask, TextRange range, qint64 delta) {
                             if (mask == EditedMask::characters)
                                 layout.noteEdit(range, delta);
                             else
                                 layout.noteAttributes(range);
                         });
    }

    double advance() const { return layout.font().advance(); }

    /// The places between clusters of a stretch, its ends with them.
    std::vector<qint64> clusterPlaces(TextRange range) const {
        std::vector<qint64> places;
        for (qint64 place = range.location; place < range.end(); place = boundaries::nextCluster(storage.text(), place))
            places.push_back(place);
        places.push_back(range.end());
        return places;
    }

    TextStorage storage;
    TextLayout layout;
};

/// A line longer than what is shaped as a whole, with `start` at its start.
inline std::u16string longLine(std::u16string_view start) {
    return std::u16string(start) + std::u16string(static_cast<std::size_t>(TextLayout::segmentLength) + 100, u'.');
}

} // namespace quelm
