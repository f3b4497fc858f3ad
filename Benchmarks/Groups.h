#pragma once

#include "Benchmarks/Options.h"

namespace quelm::bench {

/// Parsing, writing and checking, side by side with other libraries, on every document.
/// Returns whether every document could be read.
bool runJSONGroup(const Options& options);

/// The outline of a document of five million values: rows and edits.
bool runOutlineGroup(const Options& options);

/// Saving, loading, the journals of unsaved changes and repeating them. Needs no screen.
bool runFilesGroup(const Options& options);

/// The text editor at five sizes, by lines and in one line: opening, keys, pages, clicks, pasting, copying. Needs no
/// screen.
bool runTextGroup(const Options& options);

/// The tree editor of a window with five million rows: expanding, scrolling, every edit, undo and redo; a field on a
/// long string. Needs no screen.
bool runWindowGroup(const Options& options);

} // namespace quelm::bench
