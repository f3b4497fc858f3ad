#include "FileCore/FileLoading.h"

#include "FileCore/AvailableMemory.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <limits>
#include <new>
#include <span>
#include <vector>

namespace quelm {

namespace {

using Reason = LoadFailure::Reason;

/// The longest single read: a cancelled one ends soon.
constexpr std::size_t blockSize = std::size_t{4} << 20;
/// Room beyond the size that a file states, so that the read which finds its end needs no growth.
constexpr std::size_t roomForTheEnd = std::size_t{64} << 10;
/// How often a file is read that changes meanwhile.
constexpr int mostReadings = 4;

std::unexpected<LoadFailure> failure(Reason reason, int code) {
    return std::unexpected(LoadFailure{reason, SystemError{code}});
}

std::expected<void, LoadFailure> checkKind(const struct stat& status) {
    if (S_ISDIR(status.st_mode))
        return failure(Reason::folder, EISDIR);
    if (!S_ISREG(status.st_mode))
        return failure(Reason::notAFile, EINVAL);
    return {};
}

/// A regular file, open for reading.
std::expected<FileDescriptor, LoadFailure> openRegular(const std::string& path, SystemCalls& calls) {
    struct stat status{};
    // Looked at first: opening alone does something to some devices.
    if (uninterrupted([&] { return calls.status(path.c_str(), status); }) != 0)
        return failure(Reason::system, errno);
    if (auto checked = checkKind(status); !checked)
        return std::unexpected(checked.error());
    auto file = openFile(path.c_str(), O_RDONLY | O_NONBLOCK, 0, calls);
    if (!file)
        return failure(Reason::system, file.error().code);
    return *std::move(file);
}

std::expected<struct stat, LoadFailure> statusOf(const FileDescriptor& file, SystemCalls& calls) {
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(file.number(), status); }) != 0)
        return failure(Reason::system, errno);
    if (auto checked = checkKind(status); !checked)
        return std::unexpected(checked.error());
    return status;
}

/// One reading of a file from its beginning to its end.
struct Reading {
    std::stop_token stop;
    WorkProgress* progress;
    SystemCalls& calls;
    /// Room for the next bytes of the file, one at least.
    std::function<std::span<char>()> room;
    /// The bytes that were read into it.
    std::function<void(std::string_view)> take;

    std::expected<void, LoadFailure> run(int file, std::int64_t limit) const {
        if (uninterrupted([&] { return calls.seek(file, 0, SEEK_SET); }) < 0)
            return failure(Reason::system, errno);
        for (std::int64_t size = 0;;) {
            if (stop.stop_requested())
                return failure(Reason::cancelled, 0);
            const std::span<char> space = room();
            const auto count = readSome(file, space, calls);
            if (!count)
                return failure(Reason::system, count.error().code);
            if (*count == 0)
                return {};
            size += static_cast<std::int64_t>(*count);
            if (size > limit)
                return failure(Reason::tooLarge, EFBIG);
            take({space.data(), *count});
            if (progress)
                progress->add(static_cast<std::int64_t>(*count));
        }
    }
};

/// Runs `read` for the file's size, again while the file changes under it; the stamp of the file that was read.
std::expected<FileStamp, LoadFailure>
readUnchanged(const FileDescriptor& file, SystemCalls& calls,
              const std::function<std::expected<void, LoadFailure>(std::int64_t size)>& read) {
    for (int reading = 1;; ++reading) {
        const auto before = statusOf(file, calls);
        if (!before)
            return std::unexpected(before.error());
        if (auto done = read(before->st_size); !done)
            return std::unexpected(done.error());
        const auto after = statusOf(file, calls);
        if (!after)
            return std::unexpected(after.error());
        // The stamp of before shows everybody who compares it that the file is another by now.
        if (FileStamp::from(*before) == FileStamp::from(*after) || reading == mostReadings)
            return FileStamp::from(*before);
    }
}

} // namespace

std::int64_t largestLoadableSize(std::int64_t memory) {
    // A file of records in the tree has been seen to take 2.7 times its size, at the peak.
    constexpr std::int64_t memoryPerByte = 3;
    return std::min(longestText, memory / memoryPerByte);
}

std::int64_t largestLoadableSize() {
    const auto memory = availableMemory();
    return memory ? largestLoadableSize(*memory) : longestText;
}

std::expected<LoadedFile, LoadFailure> loadFile(const std::string& path, std::stop_token stop, WorkProgress* progress,
                                                SystemCalls& calls) {
    const auto file = openRegular(path, calls);
    if (!file)
        return std::unexpected(file.error());
    try {
        TextBuilder bytes;
        ContentHasher hasher;
        const Reading reading{.stop = std::move(stop),
                              .progress = progress,
                              .calls = calls,
                              .room =
                                  [&] {
                                      const std::size_t count = std::clamp(bytes.available(), roomForTheEnd, blockSize);
                                      return std::span(bytes.room(count), count);
                                  },
                              .take =
                                  [&](std::string_view read) {
                                      bytes.advance(read.size());
                                      hasher.update(read);
                                  }};
        const std::int64_t limit = largestLoadableSize();
        const auto stamp = readUnchanged(*file, calls, [&](std::int64_t size) -> std::expected<void, LoadFailure> {
            if (size > limit)
                return failure(Reason::tooLarge, EFBIG);
            bytes = TextBuilder(static_cast<std::size_t>(size) + roomForTheEnd);
            hasher = ContentHasher();
            return reading.run(file->number(), limit);
        });
        if (!stamp)
            return std::unexpected(stamp.error());
        return LoadedFile{bytes.finish(), *stamp, hasher.checksum()};
    } catch (const std::bad_alloc&) {
        return failure(Reason::noMemory, ENOMEM);
    }
}

std::expected<ContentChecksum, LoadFailure> checksumOfFile(const std::string& path, std::stop_token stop,
                                                           SystemCalls& calls) {
    const auto file = openRegular(path, calls);
    if (!file)
        return std::unexpected(file.error());
    try {
        std::vector<char> block(std::size_t{1} << 20);
        ContentHasher hasher;
        const Reading reading{.stop = std::move(stop),
                              .progress = nullptr,
                              .calls = calls,
                              .room = [&] { return std::span(block); },
                              .take = [&](std::string_view read) { hasher.update(read); }};
        const auto stamp = readUnchanged(*file, calls, [&](std::int64_t) {
            hasher = ContentHasher();
            return reading.run(file->number(), std::numeric_limits<std::int64_t>::max());
        });
        if (!stamp)
            return std::unexpected(stamp.error());
        return hasher.checksum();
    } catch (const std::bad_alloc&) {
        return failure(Reason::noMemory, ENOMEM);
    }
}

} // namespace quelm
