#pragma once

#include "Quelm/TextEngine/DerivedRuns.h"
#include "TextCore/TextRope.h"

namespace quelm {

/// The colours of a piece of JSON as it was when it was coloured. The text is kept until the last chunk of it goes.
/// Chunks are in UTF-16 units of the piece, and divide it as `SyntaxDivider` does.
class SyntaxStretch : public DerivedRuns {
public:
    explicit SyntaxStretch(TextRope text) : text_(std::move(text)) {}

private:
    void derive(TextRange chunk, AttributeRunsBuilder& runs) const override;

    const TextRope text_;
};

} // namespace quelm
