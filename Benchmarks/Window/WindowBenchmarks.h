#pragma once

#include "Benchmarks/Options.h"
#include "Benchmarks/Outline/OutlineDocument.h"
#include "Benchmarks/Window/TreeWindow.h"
#include "Benchmarks/Window/WatchedApplication.h"

#include <string>
#include <string_view>

/// Each measures one side of the tree editor's window and prints its lines. The document is afterwards as it was, but
/// for detached nodes in its store.
namespace quelm::bench {

/// As in "window/rename/object-1M-front".
inline std::string windowLabel(std::string_view measurement, std::string_view where = {}) {
    return "window/" + std::string(measurement) + (where.empty() ? "" : "/" + std::string(where));
}

/// The five million values of `OutlineDocument` in a window.
struct LargeWindow {
    LargeWindow() : LargeWindow(makeOutlineDocument()) {}

    NodeID largeArray;
    NodeID largeObject;
    TreeWindow window;

private:
    explicit LargeWindow(OutlineDocument document)
        : largeArray(document.largeArray), largeObject(document.largeObject), window(std::move(document.tree)) {}
};

/// From starting the program to its first painted window, without and with a file, beside other programs' windows.
void measureStart();

/// Expanding and collapsing everything, the large object and the large array, the memory of the rows, and the reload
/// after the whole content was replaced. Leaves all rows shown.
void measureExpansion(LargeWindow& large);

/// Frames anywhere: jumps, pages, steps of the selection, the wheel; and the search for a key that is typed. All rows
/// must be shown.
void measureScrolling(LargeWindow& large);

/// Every edit with its undo and redo at the front, in the middle and at the end of the document, of the large array and
/// of the large object, also while a snapshot of the content is alive. All rows must be shown.
void measureWindowEdits(LargeWindow& large);

/// What a window does with a whole document of 100 MB or of a million members, in the background for the most part: how
/// long it takes, how long the window does not answer at most, and the memory at the peak.
void measureOperations(WatchedApplication& application, const Options& options);

/// A field on a string of 10 MB, in a document of its own: opening it, keys in it, handing it in, undo.
void measureLongField();

} // namespace quelm::bench
