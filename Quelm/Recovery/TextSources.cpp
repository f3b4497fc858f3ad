#include "Quelm/Recovery/TextSources.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

using journal::TextSource;
using Stretch = TextSources::Stretch;

/// Pointers into different memory are ordered by this alone.
constexpr std::less<const char*> isBefore;

/// The memory that a text is in, in the order of the addresses, each address once.
std::vector<Stretch> stretchesOf(const TextRope& text) {
    std::vector<Stretch> stretches;
    std::int64_t location = 0;
    text.forEachChunk({0, text.byteCount()}, [&](std::string_view bytes) {
        const char* end = bytes.data() + bytes.size();
        // A file that was read whole is one stretch, in however many chunks.
        if (!stretches.empty() && stretches.back().end == bytes.data())
            stretches.back().end = end;
        else
            stretches.push_back({bytes.data(), end, location});
        location += static_cast<std::int64_t>(bytes.size());
    });
    std::ranges::sort(stretches, [](const Stretch& left, const Stretch& right) {
        return isBefore(left.start, right.start) || (left.start == right.start && isBefore(right.end, left.end));
    });
    // What was pasted again is there twice.
    std::vector<Stretch> distinct;
    for (Stretch stretch : stretches) {
        if (!distinct.empty() && isBefore(stretch.start, distinct.back().end)) {
            if (!isBefore(distinct.back().end, stretch.end))
                continue;
            stretch.location += distinct.back().end - stretch.start;
            stretch.start = distinct.back().end;
        }
        distinct.push_back(stretch);
    }
    return distinct;
}

/// The first stretch that ends after the address; the end when there is none.
auto stretchAfter(const std::vector<Stretch>& stretches, const char* address) {
    return std::ranges::upper_bound(stretches, address, isBefore, &Stretch::end);
}

/// How the bytes from `start` on begin: with a copy of a stretch, or with bytes that no stretch has.
struct Beginning {
    std::optional<std::int64_t> location;
    const char* end = nullptr;
};

Beginning beginningOf(const char* start, const char* end, const std::vector<Stretch>& stretches) {
    const auto stretch = stretchAfter(stretches, start);
    if (stretch == stretches.end() || !isBefore(stretch->start, end))
        return {std::nullopt, end};
    if (isBefore(start, stretch->start))
        return {std::nullopt, stretch->start};
    return {stretch->location + (start - stretch->start), std::min(end, stretch->end, isBefore)};
}

/// Puts the description of a text together, in which adjacent sources of one origin are joined.
class Description {
public:
    explicit Description(const TextRope& text) : text_(text) {}

    void add(TextSource::Origin origin, std::int64_t location, std::int64_t length) {
        if (copy_.length != 0 && copy_.origin == origin && copy_.location + copy_.length == location) {
            copy_.length += length;
        } else {
            finishCopy();
            copy_ = {.origin = origin, .bytes = {}, .location = location, .length = length};
        }
        position_ += length;
    }

    void addLiteral(std::int64_t length) {
        finishCopy();
        literal_.length += length;
        position_ += length;
    }

    std::vector<TextSource> finish() {
        finishCopy();
        finishLiteral();
        return std::move(sources_);
    }

private:
    void finishCopy() {
        const TextSource copy = std::exchange(copy_, {});
        if (copy.length == 0)
            return;
        if (copy.length < TextSources::shortestCopy) {
            literal_.length += copy.length;
            return;
        }
        finishLiteral();
        sources_.push_back(copy);
        literal_ = {position_, 0};
    }

    void finishLiteral() {
        if (literal_.isEmpty())
            return;
        TextBuilder builder(static_cast<std::size_t>(literal_.length));
        text_.forEachChunk(literal_, [&](std::string_view bytes) { builder.append(bytes); });
        sources_.push_back(
            {.origin = TextSource::Origin::literal, .bytes = builder.finish(), .location = 0, .length = 0});
        literal_ = {position_, 0};
    }

    const TextRope& text_;
    std::vector<TextSource> sources_;
    /// What was added last, if that is a copy, and what comes before it and is not in the sources yet.
    TextSource copy_;
    ByteRange literal_;
    std::int64_t position_ = 0;
};

} // namespace

std::vector<TextSource> TextSources::describe(const TextRope& text, const TextRope& removed) {
    Description description(text);
    if (text.byteCount() < shortestCopy) {
        description.addLiteral(text.byteCount());
        return description.finish();
    }
    const std::vector<Stretch> removedStretches = stretchesOf(removed);
    if (fileStretches_.empty())
        fileStretches_ = stretchesOf(file_);
    text.forEachChunk({0, text.byteCount()}, [&](std::string_view bytes) {
        const char* end = bytes.data() + bytes.size();
        for (const char* start = bytes.data(); start != end;) {
            const Beginning ofRemoved = beginningOf(start, end, removedStretches);
            if (ofRemoved.location) {
                description.add(TextSource::Origin::removed, *ofRemoved.location, ofRemoved.end - start);
                start = ofRemoved.end;
                continue;
            }
            const Beginning ofFile = beginningOf(start, ofRemoved.end, fileStretches_);
            if (ofFile.location)
                description.add(TextSource::Origin::file, *ofFile.location, ofFile.end - start);
            else
                description.addLiteral(ofFile.end - start);
            start = ofFile.end;
        }
    });
    return description.finish();
}

} // namespace quelm
