#include "JSONCore/JSONSerializer.h"

#include "JSONCore/JSONWriter.h"
#include "TextCore/Check.h"

namespace quelm {

namespace {

JSONWriter writerFor(const JSONTree& tree, const JSONStyle& style) {
    const auto indent = style.prettyIndent();
    return {storageOf(tree), indent ? JSONStyle::unit(*indent) : std::string_view(), style.sortsKeys()};
}

NodeID startOf(const JSONTree& tree, std::optional<NodeID> from) {
    const NodeID start = from ? *from : tree.root();
    require(start.raw >= 0 && start.raw < tree.storedNodeCount(), "a node id is stored in the tree");
    return start;
}

} // namespace

SharedText JSONSerializer::serialize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style) {
    return writerFor(tree, style).write(startOf(tree, from));
}

void JSONSerializer::serialize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style,
                               const std::function<void(std::string_view)>& take) {
    writerFor(tree, style).write(startOf(tree, from), take);
}

std::size_t JSONSerializer::expectedSize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style) {
    return writerFor(tree, style).expectedSize(startOf(tree, from));
}

TextRope JSONSerializer::serializeToString(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style) {
    return TextRope(serialize(tree, from, style));
}

} // namespace quelm
