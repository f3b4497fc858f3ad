#pragma once

#include "Benchmarks/Generator/JSONEmitter.h"
#include "Benchmarks/Generator/Random.h"

#include <cstdint>

/// Values that the kinds of document are made of: each call writes one value. `number` is its position among
/// its siblings and makes it unlike the others.
namespace quelm::bench::items {

/// An object as an API lists them: identifiers, texts, numbers, flags, nulls, nested objects and short
/// arrays; about 25 bytes a value when compact.
void record(JSONEmitter& out, std::uint64_t number, Random& random);

/// A string of 200 to 6,000 bytes of prose without escapes.
void longString(JSONEmitter& out, std::uint64_t number, Random& random);

/// A string in which every few characters an escape stands, all forms of it.
void escapedString(JSONEmitter& out, std::uint64_t number, Random& random);

/// An object whose keys and texts are Spanish, Cyrillic, Chinese, Japanese and emoji.
void nonLatinRecord(JSONEmitter& out, std::uint64_t number, Random& random);

/// An array of 4 to 60 numbers of one sort: small or large integers, decimals, exponents.
void numberRow(JSONEmitter& out, std::uint64_t number, Random& random);

/// One of the above, records more often than the others.
void mixedItem(JSONEmitter& out, std::uint64_t number, Random& random);

/// Members and elements nested 300 to 900 levels, down and up again, until the text with all closed has
/// reached about `size` bytes.
void deepNesting(JSONEmitter& out, std::uint64_t size, Random& random);

/// The deepest level that `deepNesting` opens. Peers refuse beyond about a thousand.
inline constexpr std::size_t deepestLevel = 900;

} // namespace quelm::bench::items
