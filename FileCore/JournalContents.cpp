#include "FileCore/JournalContents.h"

#include "FileCore/JournalFormat.h"

#include <algorithm>
#include <string_view>

namespace quelm {

using namespace journalformat;

namespace {

// What a device writes whole or not at all.
constexpr std::size_t sectorSize = 512;

bool isZero(std::string_view bytes) {
    return bytes.find_first_not_of('\0') == std::string_view::npos;
}

// Whether writing the head of a file, which begins so, may have been cut off and left these bytes as the whole file.
bool isCutHead(std::string_view bytes) {
    const std::string_view begin = bytes.substr(0, magic().size());
    const std::size_t same = static_cast<std::size_t>(std::ranges::mismatch(begin, magic()).in1 - begin.begin());
    if (same == magic().size())
        return bytes.size() < headSize;
    return isZero(bytes.substr(same));
}

// The same of a record whose head is not right, or not whole; `rest` is all that follows the record before.
bool isCutRecordHead(std::string_view rest) {
    return rest.size() < recordHeadSize || isZero(rest.substr(recordHeadSize - 1));
}

// Whether a sector of the payload, as far as the sector is taken by it, holds nothing but zeros.
bool lacksSector(std::string_view file, std::size_t begin, std::size_t end) {
    while (begin < end) {
        const std::size_t next = std::min(end, (begin / sectorSize + 1) * sectorSize);
        if (isZero(file.substr(begin, next - begin)))
            return true;
        begin = next;
    }
    return false;
}

} // namespace

JournalContents JournalContents::read(const SharedText& bytes) {
    JournalContents contents;
    const std::string_view file = bytes.view();
    if (isCutHead(file)) {
        contents.end = End::torn;
        return contents;
    }
    const auto identity = identityOf(file);
    if (!identity)
        return contents;
    contents.identity = *identity;

    std::size_t position = headSize;
    const auto endWith = [&](End end) {
        contents.end = end;
        contents.validSize = static_cast<std::int64_t>(position);
        return contents;
    };
    while (position < file.size()) {
        const std::string_view rest = file.substr(position);
        if (rest.size() < recordHeadSize)
            return endWith(End::torn);
        const auto head = readRecordHead(rest, *identity, contents.records.size());
        if (!head)
            return endWith(isCutRecordHead(rest) ? End::torn : End::damaged);
        if (head->length > rest.size() - recordHeadSize)
            return endWith(End::torn);
        const std::size_t begin = position + recordHeadSize;
        const std::size_t end = begin + head->length;
        if (!head->fits(file.substr(begin, head->length)))
            return endWith(lacksSector(file, begin, end) && isZero(file.substr(end)) ? End::torn : End::damaged);
        contents.records.push_back(bytes.slice(begin, head->length));
        position = end;
    }
    return endWith(End::whole);
}

} // namespace quelm
