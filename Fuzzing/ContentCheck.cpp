#include "Fuzzing/ContentCheck.h"

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/JSONDocument.h"
#include "TextCore/Check.h"
#include "TextCore/UTF8.h"

namespace quelm::fuzzing {

void checkContent(const JSONContent& content) {
    require(content.text || content.tree, "a document holds something");
    if (content.tree)
        content.tree->checkInvariants();
    const SharedText bytes = JSONDocument::fileContents(content);
    require(utf8::isValid(bytes.view()), "a document is UTF-8");
    if (content.text)
        require(content.text->contiguous().view() == bytes.view(), "a text is saved as it is");
}

} // namespace quelm::fuzzing
