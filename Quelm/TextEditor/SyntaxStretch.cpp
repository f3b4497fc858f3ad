#include "Quelm/TextEditor/SyntaxStretch.h"

#include "Quelm/TextEditor/SyntaxScanner.h"

namespace quelm {

void SyntaxStretch::derive(TextRange chunk, AttributeRunsBuilder& runs) const {
    SyntaxScanner(text_, chunk).scan(chunk.end(), runs);
}

} // namespace quelm
