#include "Benchmarks/Generator/JSONEmitter.h"

namespace quelm::bench {

namespace {

constexpr std::size_t blockSize = 1 << 18;
constexpr std::size_t spacesPerLevel = 2;

} // namespace

JSONEmitter::JSONEmitter(Layout layout, Destination destination)
    : layout_(layout), destination_(std::move(destination)) {
    block_.reserve(blockSize + 4096);
}

void JSONEmitter::end() {
    const Container closed = open_.back();
    open_.pop_back();
    if (!closed.isEmpty)
        breakLine(open_.size());
    block_ += closed.closing;
}

void JSONEmitter::key(std::string_view written) {
    separate();
    block_ += '"';
    append(written);
    block_ += layout_ == Layout::indented ? "\": " : "\":";
    afterKey_ = true;
}

void JSONEmitter::string(std::string_view written) {
    beginValue();
    block_ += '"';
    append(written);
    block_ += '"';
}

void JSONEmitter::literal(std::string_view text) {
    beginValue();
    append(text);
}

std::uint64_t JSONEmitter::sizeIfClosed() const {
    const std::uint64_t levels = open_.size();
    const std::uint64_t written = handedOver_ + block_.size() + levels;
    if (layout_ == Layout::compact)
        return written;
    // A line feed a level and one at the end; the indentation of the levels 0 to `levels - 1`.
    return written + levels + 1 + spacesPerLevel * (levels * (levels - (levels > 0)) / 2);
}

void JSONEmitter::finish() {
    if (layout_ == Layout::indented)
        block_ += '\n';
    destination_(block_);
    handedOver_ += block_.size();
    block_.clear();
}

void JSONEmitter::open(char opening, char closing) {
    beginValue();
    block_ += opening;
    open_.push_back({closing});
}

void JSONEmitter::beginValue() {
    if (!afterKey_ && !open_.empty())
        separate();
    afterKey_ = false;
}

void JSONEmitter::separate() {
    if (!open_.back().isEmpty)
        block_ += ',';
    open_.back().isEmpty = false;
    breakLine(open_.size());
}

void JSONEmitter::breakLine(std::size_t level) {
    if (layout_ == Layout::compact)
        return;
    block_ += '\n';
    block_.append(level * spacesPerLevel, ' ');
}

void JSONEmitter::append(std::string_view bytes) {
    if (block_.size() + bytes.size() > blockSize) {
        destination_(block_);
        handedOver_ += block_.size();
        block_.clear();
    }
    block_ += bytes;
}

} // namespace quelm::bench
