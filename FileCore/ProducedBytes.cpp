#include "FileCore/ProducedBytes.h"

#include "FileCore/FileDescriptor.h"

#include <algorithm>
#include <optional>

namespace quelm {

namespace {

using Step = SaveFailure::Step;
using Reason = SaveFailure::Reason;

/// The most that is written between two looks at the stop token.
constexpr std::size_t blockSize = std::size_t{16} << 20;

} // namespace

std::expected<ContentChecksum, SaveFailure> writeProduced(int file, const ProducePieces& produce,
                                                          const SaveOptions& options) {
    ContentHasher hasher;
    std::optional<SaveFailure> failure;
    const auto takeBlock = [&](std::string_view block) {
        if (options.stop.stop_requested()) {
            failure = SaveFailure{Step::write, Reason::cancelled, {}, {}};
        } else if (auto written = writeAll(file, block, *options.calls); !written) {
            failure = SaveFailure::at(Step::write, written.error());
        } else {
            hasher.update(block);
            if (options.progress)
                options.progress->add(static_cast<std::int64_t>(block.size()));
        }
    };
    const bool isWhole = produce([&](std::string_view piece) {
        for (; !piece.empty() && !failure; piece.remove_prefix(std::min(piece.size(), blockSize)))
            takeBlock(piece.substr(0, blockSize));
        return !failure;
    });
    // Whoever makes the bytes may look at the stop token too.
    if (!failure && options.stop.stop_requested())
        failure = SaveFailure{Step::write, Reason::cancelled, {}, {}};
    if (!failure && !isWhole)
        failure = SaveFailure{Step::write, Reason::notProduced, {}, {}};
    if (failure)
        return std::unexpected(*std::move(failure));
    return hasher.checksum();
}

} // namespace quelm
