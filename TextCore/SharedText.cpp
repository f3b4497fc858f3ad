#include "TextCore/SharedText.h"

#include "TextCore/Check.h"
#include "TextCore/PageMemory.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace quelm {

SharedText::SharedText(std::string_view bytes) {
    if (bytes.empty())
        return;
    TextBuilder builder(bytes.size());
    builder.append(bytes);
    *this = builder.finish();
}

SharedText SharedText::slice(std::size_t position, std::size_t count) const {
    require(position <= size() && count <= size() - position, "a slice lies within its text");
    return SharedText(owner_, bytes_.substr(position, count));
}

SharedText SharedText::paddedCopy() const {
    if (padded_)
        return *this;
    TextBuilder builder(size());
    builder.append(bytes_);
    return builder.finish();
}

TextBuilder::TextBuilder(std::size_t capacity) {
    if (capacity != 0)
        grow(capacity);
}

TextBuilder::TextBuilder(TextBuilder&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

TextBuilder& TextBuilder::operator=(TextBuilder&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
}

TextBuilder::~TextBuilder() {
    if (data_)
        pagememory::release(data_, capacity_ + SharedText::padding);
}

void TextBuilder::append(std::string_view bytes) {
    if (bytes.empty())
        return;
    std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
    advance(bytes.size());
}

void TextBuilder::grow(std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() / 4 - size_)
        throw std::bad_alloc();
    const std::size_t wanted = std::max({size_ + count, capacity_ * 2, std::size_t{64}});
    auto* larger = static_cast<char*>(pagememory::allocate(wanted + SharedText::padding));
    if (data_) {
        std::memcpy(larger, data_, size_);
        pagememory::release(data_, capacity_ + SharedText::padding);
    }
    data_ = larger;
    capacity_ = wanted;
}

SharedText TextBuilder::finish() {
    if (!data_)
        grow(0);
    std::memset(data_ + size_, 0, SharedText::padding);
    const std::size_t bytes = capacity_ + SharedText::padding;
    char* data = std::exchange(data_, nullptr); // from here on the owner releases it
    std::shared_ptr<const void> owner(data, [bytes](void* memory) { pagememory::release(memory, bytes); });
    SharedText text(std::move(owner), std::string_view(data, std::exchange(size_, 0)));
    text.padded_ = true;
    capacity_ = 0;
    return text;
}

} // namespace quelm
