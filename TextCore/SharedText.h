#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace quelm {

/// An immutable, contiguous piece of UTF-8 text with shared ownership of the memory that holds it. Copying costs one
/// reference count; a slice shares its whole. The bytes stay where they are for as long as any piece of them lives,
/// so a view of a piece may be kept beside a copy of the piece. Values may be used on any thread.
///
/// The class does not check that its bytes are well-formed: whoever makes a piece sees to that (see `utf8::isValid`).
class SharedText {
public:
    /// Bytes after the end of every text made by a `TextBuilder`, all zero, that may be read (not relied on for
    /// slices): scanners may load a whole vector at any position of the text.
    static constexpr std::size_t padding = 64;

    SharedText() = default;
    SharedText(const SharedText&) = default;
    /// The other is empty afterwards.
    SharedText(SharedText&& other) noexcept
        : owner_(std::move(other.owner_)), bytes_(std::exchange(other.bytes_, {})),
          padded_(std::exchange(other.padded_, false)) {}
    SharedText& operator=(SharedText other) noexcept {
        std::swap(owner_, other.owner_);
        std::swap(bytes_, other.bytes_);
        std::swap(padded_, other.padded_);
        return *this;
    }
    ~SharedText() = default;

    /// A copy of the bytes in memory of its own, padded.
    explicit SharedText(std::string_view bytes);

    /// A piece of memory that `owner` keeps alive.
    SharedText(std::shared_ptr<const void> owner, std::string_view bytes) : owner_(std::move(owner)), bytes_(bytes) {}

    std::string_view view() const { return bytes_; }
    const char* data() const { return bytes_.data(); }
    std::size_t size() const { return bytes_.size(); }
    bool empty() const { return bytes_.empty(); }

    /// `count` bytes from `position`, sharing this piece's memory. The range must lie within the text.
    SharedText slice(std::size_t position, std::size_t count) const;

    /// Whether `padding` readable zero bytes follow the last byte.
    bool isPadded() const { return padded_; }

    /// This text when it is padded already, else a padded copy.
    SharedText paddedCopy() const;

    /// Whether both are the same bytes in the same memory.
    bool isSamePiece(const SharedText& other) const {
        return bytes_.data() == other.bytes_.data() && bytes_.size() == other.bytes_.size();
    }

private:
    friend class TextBuilder;
    std::shared_ptr<const void> owner_;
    std::string_view bytes_;
    bool padded_ = false;
};

/// Builds a `SharedText` without zeroing its memory first and without a copy at the end. Capacity is taken from the
/// system in few large pieces; bytes that are reserved and never written cost no memory. Movable, not copyable.
class TextBuilder {
public:
    explicit TextBuilder(std::size_t capacity = 0);
    TextBuilder(TextBuilder&& other) noexcept;
    TextBuilder& operator=(TextBuilder&& other) noexcept;
    ~TextBuilder();

    std::size_t size() const { return size_; }
    const char* data() const { return data_; }

    /// Room for `count` more bytes after the last one, grown if needed. Write there, then `advance`. Throws
    /// std::bad_alloc.
    char* room(std::size_t count) {
        if (capacity_ - size_ < count) [[unlikely]]
            grow(count);
        return data_ + size_;
    }

    /// Bytes that `room` gives without growing.
    std::size_t available() const { return capacity_ - size_; }

    /// Declares `count` bytes at the position that `room` gave as written. `count` must not exceed that room.
    void advance(std::size_t count) { size_ += count; }

    void append(std::string_view bytes);

    /// Forgets the bytes and keeps the memory.
    void clear() { size_ = 0; }

    /// The text, padded. The builder is empty afterwards.
    SharedText finish();

private:
    void grow(std::size_t count);

    char* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace quelm
