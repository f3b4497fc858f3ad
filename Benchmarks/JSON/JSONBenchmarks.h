#pragma once

#include "Benchmarks/JSON/Subject.h"

/// Each measures one thing on one document that our parser accepts, and prints its lines.
namespace quelm::bench {

/// Text to document without freeing it, and freeing apart.
void measureParsing(Subject& subject);

/// Document to text in the three layouts, by output bytes. Outputs that should be equal are compared first.
void measureWriting(Subject& subject);

/// The check of UTF-8, the search for the style, and opening: both of these and the parse.
void measureReading(Subject& subject);

/// The memory of a document without its text.
void measureStore(Subject& subject);

} // namespace quelm::bench
