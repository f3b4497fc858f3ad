#include "Quelm/EditorWindow/PathTail.h"

#include "JSONCore/PathNotation.h"
#include "Quelm/Foundation/VisibleText.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

namespace {

/// A part of the path, without its beginning when that is too long.
struct Component {
    std::string text;
    bool isCut = false;
};

std::string_view suffix(std::string_view text, std::size_t bytes) {
    return text.substr(text.size() - std::min(bytes, text.size()));
}

Component memberComponent(std::string_view key, std::size_t bytes) {
    const std::string_view end = suffix(key, bytes);
    const bool isCut = end.size() < key.size();
    if (!isCut)
        return {PathNotation::member(key)};
    return {PathNotation::isIdentifierLike(key) ? std::string(end) : PathNotation::escaped(end) + "\"]", true};
}

Component componentOf(const JSONTree& tree, NodeID id, NodeID container, std::size_t bytes) {
    if (tree.kind(container) == NodeKind::array)
        return {"[" + std::to_string(tree.indexInParent(id).value_or(0)) + "]"};
    return memberComponent(tree.key(id), bytes);
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

QString pathTail(const JSONTree& tree, NodeID id, std::size_t bytes) {
    std::vector<Component> components;
    std::size_t length = 0;
    std::optional<NodeID> container = tree.parent(id);
    for (; length <= bytes && container && *container != JSONTree::holder; container = tree.parent(id)) {
        components.push_back(componentOf(tree, id, *container, bytes));
        length += components.back().text.size();
        id = *container;
        if (components.back().isCut)
            break;
    }
    const bool isWhole = container == JSONTree::holder && (components.empty() || !components.back().isCut);
    std::string path = isWhole ? "$" : "";
    for (auto component = components.rbegin(); component != components.rend(); ++component)
        path += component->text;

    std::string_view tail = suffix(path, bytes);
    while (tail.size() < path.size() && !tail.empty() && isContinuation(tail.front()))
        tail.remove_prefix(1);
    const bool isCut = !isWhole || tail.size() < path.size();
    const QString text = QString::fromUtf8(tail.data(), static_cast<qsizetype>(tail.size()));
    return (isCut ? QStringLiteral("…") : QString()) + visibleCharacters(text);
}

} // namespace quelm
