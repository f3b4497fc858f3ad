#pragma once

#include "Quelm/Foundation/Pasteboard.h"

#include <optional>
#include <string>
#include <string_view>

namespace quelm {

/// A pasteboard of a test's own.
class FakePasteboard : public Pasteboard {
public:
    std::optional<TextRope> string() const override { return text_; }
    void setString(const TextRope& text) override { text_ = text; }

    void put(std::string_view text) { text_ = TextRope(SharedText(text)); }
    void clear() { text_.reset(); }
    std::optional<std::string> text() const {
        return text_ ? std::optional(std::string(text_->contiguous().view())) : std::nullopt;
    }

private:
    std::optional<TextRope> text_;
};

} // namespace quelm
