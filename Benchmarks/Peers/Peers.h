#pragma once

#include "Benchmarks/Peers/JSONLibrary.h"

#include <memory>
#include <string_view>
#include <vector>

/// The libraries that ours is measured against. Each is used as its documentation tells those who want speed.
namespace quelm::bench::peers {

/// simdjson's document parser, a fresh one for every text. It cannot write with indentation.
std::unique_ptr<JSONLibrary> simdjsonDOM();

/// RapidJSON: iterative, numbers kept as text, a fresh document for every text.
std::unique_ptr<JSONLibrary> rapidJSON();

/// The same with its SSE2 code switched on; null where the processor has none.
std::unique_ptr<JSONLibrary> rapidJSONWithSSE2();

std::unique_ptr<JSONLibrary> nlohmannJSON();
std::unique_ptr<JSONLibrary> boostJSON();
std::unique_ptr<JSONLibrary> qJsonDocument();

/// All that there are of the above, in that order.
std::vector<std::unique_ptr<JSONLibrary>> all();

/// simdjson's check of UTF-8.
bool simdjsonValidatesUTF8(std::string_view bytes);

} // namespace quelm::bench::peers
