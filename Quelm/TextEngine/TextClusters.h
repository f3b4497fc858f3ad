#pragma once

#include <QStringView>

#include <functional>

/// Grapheme clusters of a stretch of text that is to be drawn, and which of them need their neighbours to be shaped.
/// O(length); most characters cost a look-up. For the main thread.
namespace quelm::clusters {

/// Whether every character of the text may be shaped with no more than its own cluster: ideographs, kana, Hangul,
/// emoji, symbols, letters of Latin, Greek, Cyrillic and the like, with their marks, all from left to right. Never so
/// for letters that join, stack or reorder, for what runs from right to left, and for what steers directions.
bool standAlone(QStringView text);

/// Calls `visit(start, end)` for the clusters in order, which cover the text: those of ICU's rules.
void forEach(QStringView text, const std::function<void(qsizetype start, qsizetype end)>& visit);

} // namespace quelm::clusters
