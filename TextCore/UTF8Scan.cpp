// The scans over bytes that look at many at a time, compiled once for every instruction set that the compiler
// knows of and chosen when the program runs.
//
// Functions inside HWY_NAMESPACE may use instructions that the processor at hand lacks. They call nothing of
// the standard library but memcpy: a library template instantiated there could be the copy that the linker
// keeps for all.

#include "TextCore/UTF8Scan.h"

#include "TextCore/UTF8.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TextCore/UTF8Scan.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstring>

#ifndef QUELM_UTF8SCAN_SHARED
#define QUELM_UTF8SCAN_SHARED
// What does not depend on the instruction set.
namespace quelm::utf8 {
namespace {

constexpr std::uint64_t highBits = 0x8080'8080'8080'8080;

/// The lead byte of `lowLimit`: those of lower characters are less.
constexpr std::uint8_t lowLimitLead = 0xC0 | lowLimit >> 6;

/// Bytes of some kinds.
struct ByteCounts {
    std::size_t continuations = 0;
    std::size_t threeByteLeads = 0;
    std::size_t fourByteLeads = 0;
    std::size_t lineFeeds = 0;
    std::size_t carriageReturns = 0;
};

/// The ASCII prefix, eight bytes at a time.
inline std::size_t asciiPrefixByWords(const std::uint8_t* bytes, std::size_t size) {
    std::size_t position = 0;
    for (; size - position >= sizeof(std::uint64_t); position += sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, bytes + position, sizeof word);
        if ((word & highBits) != 0)
            break;
    }
    while (position < size && bytes[position] < 0x80)
        ++position;
    return position;
}

/// Adds what is in the bytes, one at a time.
inline void countOneByOne(const std::uint8_t* bytes, std::size_t size, ByteCounts& counts) {
    for (std::size_t position = 0; position < size; ++position) {
        const std::uint8_t byte = bytes[position];
        counts.continuations += byte >> 6 == 0b10;
        counts.threeByteLeads += byte >> 4 == 0b1110;
        counts.fourByteLeads += byte >> 4 == 0b1111;
        counts.lineFeeds += byte == '\n';
        counts.carriageReturns += byte == '\r';
    }
}

// Validation looks every pair of neighbouring bytes up by three of its nibbles. Each fault that two bytes can
// show is a set of first-byte high nibbles, first-byte low nibbles and second-byte high nibbles, and is the
// fault of exactly the pairs in the product of the three sets. Two sets of pairs share a bit where their
// union is such a product again.

/// A set of nibbles, one bit each.
using NibbleSet = std::uint16_t;

constexpr NibbleSet nibbles(int first, int last) {
    return static_cast<NibbleSet>((0xFFFFu >> (15 - last)) & (0xFFFFu << first));
}

struct PairFault {
    NibbleSet firstHigh;
    NibbleSet firstLow;
    NibbleSet secondHigh;
};

constexpr NibbleSet anyNibble = nibbles(0, 15);
constexpr NibbleSet continuations = nibbles(0x8, 0xB);
constexpr NibbleSet noContinuations = anyNibble & ~continuations;

/// The last "fault", two continuation bytes in a row, is none where a third or fourth byte of a sequence is
/// due: its bit is what `pairFaults` compares with that expectation. It must be the top bit.
constexpr PairFault faults[8] = {
    {nibbles(0xC, 0xF), anyNibble, noContinuations},           // a sequence cut short
    {nibbles(0x0, 0x7), anyNibble, continuations},             // a continuation after ASCII
    {nibbles(0xC, 0xC), nibbles(0x0, 0x1), continuations},     // two bytes for U+0000 to U+007F
    {nibbles(0xE, 0xE), nibbles(0x0, 0x0), nibbles(0x8, 0x9)}, // three bytes for less than U+0800
    {nibbles(0xE, 0xE), nibbles(0xD, 0xD), nibbles(0xA, 0xB)}, // a surrogate
    {nibbles(0xF, 0xF), nibbles(0x4, 0xF), nibbles(0x9, 0xB)}, // above U+10FFFF
    // less than U+10000, or a lead byte from 0xF5
    {nibbles(0xF, 0xF), nibbles(0x0, 0x0) | nibbles(0x5, 0xF), nibbles(0x8, 0x8)},
    {continuations, anyNibble, continuations},
};

/// For every nibble the faults whose set at one member it is in.
struct NibbleTable {
    alignas(16) std::uint8_t faultsOf[16] = {};

    constexpr explicit NibbleTable(NibbleSet PairFault::* member) {
        for (int nibble = 0; nibble < 16; ++nibble)
            for (int bit = 0; bit < 8; ++bit)
                faultsOf[nibble] |= static_cast<std::uint8_t>((faults[bit].*member >> nibble & 1) << bit);
    }
};

constexpr NibbleTable byFirstHigh(&PairFault::firstHigh);
constexpr NibbleTable byFirstLow(&PairFault::firstLow);
constexpr NibbleTable bySecondHigh(&PairFault::secondHigh);

} // namespace
} // namespace quelm::utf8
#endif // QUELM_UTF8SCAN_SHARED

HWY_BEFORE_NAMESPACE();
namespace quelm::utf8::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

// Without vector instructions.

std::size_t scanASCIIPrefix(const std::uint8_t* bytes, std::size_t size) {
    return asciiPrefixByWords(bytes, size);
}

bool scanValid(const std::uint8_t* bytes, std::size_t size) {
    std::size_t position = 0;
    for (;;) {
        position += asciiPrefixByWords(bytes + position, size - position);
        if (position == size)
            return true;
        const LeadingSequence sequence = leadingSequence(bytes + position, size - position);
        if (!sequence.isWellFormed)
            return false;
        position += sequence.size;
    }
}

std::size_t scanLowPrefix(const std::uint8_t* bytes, std::size_t size) {
    std::size_t position = 0;
    while (position < size && bytes[position] < lowLimitLead)
        ++position;
    return position;
}

std::size_t scanCharacters(const std::uint8_t* bytes, std::size_t size) {
    std::size_t count = 0;
    for (std::size_t position = 0; position < size; ++position)
        count += bytes[position] >> 6 != 0b10;
    return count;
}

std::size_t scanLineFeeds(const std::uint8_t* bytes, std::size_t size) {
    std::size_t count = 0;
    for (std::size_t position = 0; position < size; ++position)
        count += bytes[position] == '\n';
    return count;
}

ByteCounts scanCounts(const std::uint8_t* bytes, std::size_t size) {
    ByteCounts counts;
    countOneByOne(bytes, size, counts);
    return counts;
}

std::size_t scanCRLF(const std::uint8_t* bytes, std::size_t size) {
    std::size_t count = 0;
    for (std::size_t position = 1; position < size; ++position)
        count += (bytes[position - 1] == '\r') & (bytes[position] == '\n');
    return count;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

constexpr std::size_t widest = 64;
using Bytes = hn::CappedTag<std::uint8_t, widest>;
using Vector = hn::Vec<Bytes>;

HWY_INLINE bool isAllASCII(Vector bytes) {
    const hn::RebindToSigned<Bytes> asSigned;
    return hn::AllFalse(asSigned, hn::Lt(hn::BitCast(asSigned, bytes), hn::Zero(asSigned)));
}

/// The position of the first byte from 0x80, or -1.
HWY_INLINE std::intptr_t firstNonASCII(Vector bytes) {
    const hn::RebindToSigned<Bytes> asSigned;
    return hn::FindFirstTrue(asSigned, hn::Lt(hn::BitCast(asSigned, bytes), hn::Zero(asSigned)));
}

std::size_t scanASCIIPrefix(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const std::size_t step = hn::Lanes(d);
    if (size < step)
        return asciiPrefixByWords(bytes, size);

    std::size_t position = 0;
    for (; size - position >= 4 * step; position += 4 * step) {
        const std::uint8_t* at = bytes + position;
        const Vector firstHalf = hn::Or(hn::LoadU(d, at), hn::LoadU(d, at + step));
        const Vector secondHalf = hn::Or(hn::LoadU(d, at + 2 * step), hn::LoadU(d, at + 3 * step));
        if (!isAllASCII(hn::Or(firstHalf, secondHalf)))
            break;
    }
    for (; size - position >= step; position += step) {
        const std::intptr_t found = firstNonASCII(hn::LoadU(d, bytes + position));
        if (found >= 0)
            return position + static_cast<std::size_t>(found);
    }
    // The last vector overlaps the one before, which is ASCII throughout.
    position = size - step;
    const std::intptr_t found = firstNonASCII(hn::LoadU(d, bytes + position));
    return found >= 0 ? position + static_cast<std::size_t>(found) : size;
}

// Validation after J. Keiser and D. Lemire, "Validating UTF-8 In Less Than One Instruction Per Byte",
// Software: Practice and Experience 51 (2021).

/// Bytes before a byte that decide whether it may stand there.
constexpr std::size_t context = 3;

/// Nonzero where a byte is not what the `context` bytes before it ask for. They must be readable before `at`.
HWY_INLINE Vector pairFaults(Bytes d, Vector bytes, const std::uint8_t* at) {
    const Vector lowNibble = hn::Set(d, 0x0F);
    const Vector previous = hn::LoadU(d, at - 1);
    const Vector byFirst =
        hn::And(hn::TableLookupBytes(hn::LoadDup128(d, byFirstHigh.faultsOf), hn::ShiftRight<4>(previous)),
                hn::TableLookupBytes(hn::LoadDup128(d, byFirstLow.faultsOf), hn::And(previous, lowNibble)));
    const Vector bySecond = hn::TableLookupBytes(hn::LoadDup128(d, bySecondHigh.faultsOf), hn::ShiftRight<4>(bytes));
    // A third or fourth byte is due: the top bit is set where the byte two before is 0xE0 or more, or the one
    // three before 0xF0 or more.
    const Vector thirdByte = hn::SaturatedSub(hn::LoadU(d, at - 2), hn::Set(d, 0xE0 - 0x80));
    const Vector fourthByte = hn::SaturatedSub(hn::LoadU(d, at - 3), hn::Set(d, 0xF0 - 0x80));
    const Vector due = hn::And(hn::Or(thirdByte, fourthByte), hn::Set(d, 0x80));
    return hn::Xor(hn::And(byFirst, bySecond), due);
}

/// The faults among `count` bytes (at most a vector's) from `position`, each with the bytes before it. Fewer
/// than a vector's bytes are taken as followed by NUL, which faults a sequence that they leave unfinished.
HWY_INLINE Vector edgeFaults(Bytes d, const std::uint8_t* bytes, std::size_t position, std::size_t count) {
    std::uint8_t copy[context + widest] = {};
    const std::size_t before = position < context ? position : context;
    std::memcpy(copy + context - before, bytes + position - before, before + count);
    return pairFaults(d, hn::LoadU(d, copy + context), copy + context);
}

bool scanValid(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const std::size_t step = hn::Lanes(d);
    Vector found = hn::Zero(d);
    std::size_t position = 0;
    if (size >= step) {
        found = edgeFaults(d, bytes, 0, step);
        position = step;
    }
    for (; size - position >= 4 * step; position += 4 * step) {
        const std::uint8_t* at = bytes + position;
        const Vector first = hn::LoadU(d, at);
        const Vector second = hn::LoadU(d, at + step);
        const Vector third = hn::LoadU(d, at + 2 * step);
        const Vector fourth = hn::LoadU(d, at + 3 * step);
        if (isAllASCII(hn::Or(hn::Or(first, second), hn::Or(third, fourth)))) {
            // What may be wrong here is only that the bytes before are cut short.
            if (at[-1] >= 0x80)
                found = hn::Or(found, pairFaults(d, first, at));
            continue;
        }
        found = hn::Or(found, pairFaults(d, first, at));
        found = hn::Or(found, pairFaults(d, second, at + step));
        found = hn::Or(found, pairFaults(d, third, at + 2 * step));
        found = hn::Or(found, pairFaults(d, fourth, at + 3 * step));
        if (!hn::AllTrue(d, hn::Eq(found, hn::Zero(d))))
            return false;
    }
    for (; size - position >= step; position += step)
        found = hn::Or(found, pairFaults(d, hn::LoadU(d, bytes + position), bytes + position));
    found = hn::Or(found, edgeFaults(d, bytes, position, size - position));
    return hn::AllTrue(d, hn::Eq(found, hn::Zero(d)));
}

std::size_t scanLowPrefix(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const std::size_t step = hn::Lanes(d);
    const Vector highestLow = hn::Set(d, lowLimitLead - 1);
    std::size_t position = 0;
    for (; size - position >= step; position += step) {
        const Vector above = hn::SaturatedSub(hn::LoadU(d, bytes + position), highestLow);
        const std::intptr_t found = hn::FindFirstTrue(d, hn::Ne(above, hn::Zero(d)));
        if (found >= 0)
            return position + static_cast<std::size_t>(found);
    }
    while (position < size && bytes[position] < lowLimitLead)
        ++position;
    return position;
}

std::size_t scanCharacters(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const hn::RebindToSigned<Bytes> asSigned;
    const std::size_t step = hn::Lanes(d);
    const auto lastContinuation = hn::Set(asSigned, static_cast<std::int8_t>(0xBF));
    std::size_t count = 0;
    std::size_t position = 0;
    for (; size - position >= step; position += step) {
        const auto vector = hn::BitCast(asSigned, hn::LoadU(d, bytes + position));
        count += hn::CountTrue(asSigned, hn::Gt(vector, lastContinuation));
    }
    for (; position < size; ++position)
        count += bytes[position] >> 6 != 0b10;
    return count;
}

std::size_t scanLineFeeds(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const std::size_t step = hn::Lanes(d);
    const Vector lineFeed = hn::Set(d, '\n');
    std::size_t count = 0;
    std::size_t position = 0;
    for (; size - position >= step; position += step)
        count += hn::CountTrue(d, hn::Eq(hn::LoadU(d, bytes + position), lineFeed));
    for (; position < size; ++position)
        count += bytes[position] == '\n';
    return count;
}

ByteCounts scanCounts(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const hn::RebindToSigned<Bytes> asSigned;
    const std::size_t step = hn::Lanes(d);
    const Vector lineFeed = hn::Set(d, '\n');
    const Vector carriageReturn = hn::Set(d, '\r');
    const auto lastContinuation = hn::Set(asSigned, static_cast<std::int8_t>(0xBF));
    const auto threeByteLead = hn::Set(asSigned, static_cast<std::int8_t>(0xDF));
    const auto fourByteLead = hn::Set(asSigned, static_cast<std::int8_t>(0xEF));
    const auto none = hn::Zero(asSigned);
    ByteCounts counts;
    std::size_t position = 0;
    for (; size - position >= step; position += step) {
        const Vector vector = hn::LoadU(d, bytes + position);
        counts.lineFeeds += hn::CountTrue(d, hn::Eq(vector, lineFeed));
        counts.carriageReturns += hn::CountTrue(d, hn::Eq(vector, carriageReturn));
        if (isAllASCII(vector))
            continue;
        // As signed numbers, bytes from 0x80 are negative, in the same order.
        const auto order = hn::BitCast(asSigned, vector);
        const auto isHigh = hn::Lt(order, none);
        counts.continuations += hn::CountTrue(asSigned, hn::Not(hn::Gt(order, lastContinuation)));
        const std::size_t fourOrMore = hn::CountTrue(asSigned, hn::And(isHigh, hn::Gt(order, fourByteLead)));
        const std::size_t threeOrMore = hn::CountTrue(asSigned, hn::And(isHigh, hn::Gt(order, threeByteLead)));
        counts.fourByteLeads += fourOrMore;
        counts.threeByteLeads += threeOrMore - fourOrMore;
    }
    countOneByOne(bytes + position, size - position, counts);
    return counts;
}

std::size_t scanCRLF(const std::uint8_t* bytes, std::size_t size) {
    const Bytes d;
    const std::size_t step = hn::Lanes(d);
    const Vector lineFeed = hn::Set(d, '\n');
    const Vector carriageReturn = hn::Set(d, '\r');
    std::size_t count = 0;
    std::size_t position = 1;
    for (; position + step <= size; position += step)
        count += hn::CountTrue(d, hn::And(hn::Eq(hn::LoadU(d, bytes + position - 1), carriageReturn),
                                          hn::Eq(hn::LoadU(d, bytes + position), lineFeed)));
    for (; position < size; ++position)
        count += (bytes[position - 1] == '\r') & (bytes[position] == '\n');
    return count;
}

#endif

} // namespace
} // namespace quelm::utf8::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quelm::utf8 {

HWY_EXPORT(scanASCIIPrefix);
HWY_EXPORT(scanValid);
HWY_EXPORT(scanLineFeeds);
HWY_EXPORT(scanCounts);
HWY_EXPORT(scanCRLF);
HWY_EXPORT(scanLowPrefix);
HWY_EXPORT(scanCharacters);

namespace {

const std::uint8_t* unsignedBytes(std::string_view bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

} // namespace

bool isValid(std::string_view bytes) {
    return bytes.empty() || HWY_DYNAMIC_DISPATCH(scanValid)(unsignedBytes(bytes), bytes.size());
}

bool isASCII(std::string_view bytes) {
    return asciiPrefixLength(bytes) == bytes.size();
}

std::size_t asciiPrefixLength(std::string_view bytes) {
    return HWY_DYNAMIC_DISPATCH(scanASCIIPrefix)(unsignedBytes(bytes), bytes.size());
}

std::size_t countLineFeeds(std::string_view bytes) {
    return HWY_DYNAMIC_DISPATCH(scanLineFeeds)(unsignedBytes(bytes), bytes.size());
}

TextSummary summarize(std::string_view text) {
    const ByteCounts counts = HWY_DYNAMIC_DISPATCH(scanCounts)(unsignedBytes(text), text.size());
    const auto number = [](std::size_t count) { return static_cast<std::int64_t>(count); };
    // A character is a byte that continues none, and one of four bytes is a pair of units.
    return {.bytes = number(text.size()),
            .utf16 = number(text.size() - counts.continuations + counts.fourByteLeads),
            .lineFeeds = number(counts.lineFeeds),
            .carriageReturns = number(counts.carriageReturns),
            .threeByteForms = number(counts.threeByteLeads)};
}

std::size_t countCRLF(std::string_view bytes) {
    return HWY_DYNAMIC_DISPATCH(scanCRLF)(unsignedBytes(bytes), bytes.size());
}

std::size_t lowPrefixLength(std::string_view text) {
    return HWY_DYNAMIC_DISPATCH(scanLowPrefix)(unsignedBytes(text), text.size());
}

std::size_t countCharacters(std::string_view text) {
    return HWY_DYNAMIC_DISPATCH(scanCharacters)(unsignedBytes(text), text.size());
}

} // namespace quelm::utf8
#endif // HWY_ONCE
