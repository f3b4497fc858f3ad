#include "JSONCore/JSONSerializer.h"

#include "JSONCore/JSONWriter.h"
#include "TextCore/Check.h"

namespace quelm {

SharedText JSONSerializer::serialize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style) {
    const NodeID start = from ? *from : tree.root();
    require(start.raw >= 0 && start.raw < tree.storedNodeCount(), "a node id is stored in the tree");
    const auto indent = style.prettyIndent();
    JSONWriter writer(storageOf(tree), indent ? JSONStyle::unit(*indent) : std::string_view(), style.sortsKeys());
    return writer.write(start);
}

TextRope JSONSerializer::serializeToString(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style) {
    return TextRope(serialize(tree, from, style));
}

} // namespace quelm
