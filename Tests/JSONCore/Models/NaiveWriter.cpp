#include "Tests/JSONCore/Models/NaiveWriter.h"

#include "TextCore/CanonicalText.h"

#include <algorithm>
#include <variant>
#include <vector>

namespace quelm::test {

namespace {

std::string quoted(std::string_view text) {
    static constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
    static constexpr std::string_view letters = "\"\\bfnrt";
    std::string result = "\"";
    for (const char character : text) {
        if (const auto which = escaped.find(character); which != escaped.npos)
            (result += '\\') += letters[which];
        else if (static_cast<unsigned char>(character) < 0x20)
            (result += character < 0x10 ? "\\u000" : "\\u001") += "0123456789abcdef"[character & 0xF];
        else
            result += character;
    }
    return result + "\"";
}

/// Either bytes to write as they are, or a value still to be taken apart, at a level of nesting.
struct Piece {
    std::variant<std::string, NodeID> what;
    int level = 0;
};

class NaiveWriter {
public:
    NaiveWriter(const NaiveTree& tree, const JSONStyle& style) : tree_(tree), style_(style) {}

    std::string write(NodeID from) {
        pending_.push_back({from, 0});
        while (!pending_.empty()) {
            const Piece piece = std::move(pending_.back());
            pending_.pop_back();
            if (const auto* bytes = std::get_if<std::string>(&piece.what))
                output_ += *bytes;
            else
                takeApart(std::get<NodeID>(piece.what), piece.level);
        }
        return output_ + (style_.isPretty() ? "\n" : "");
    }

private:
    void takeApart(NodeID id, int level) {
        const NaiveNode& node = tree_[id];
        if (isContainer(node.kind)) {
            const std::vector<Piece> pieces = piecesOf(node, level);
            pending_.insert(pending_.end(), pieces.rbegin(), pieces.rend());
        } else if (node.kind == NodeKind::string) {
            output_ += quoted(node.scalar);
        } else {
            output_ += node.kind == NodeKind::null ? "null" : node.scalar;
        }
    }

    std::vector<Piece> piecesOf(const NaiveNode& node, int level) const {
        const bool isObject = node.kind == NodeKind::object;
        std::vector<Piece> pieces{{isObject ? "{" : "[", level}};
        std::vector<NodeID> children = node.children;
        if (isObject && style_.sortsKeys()) {
            std::stable_sort(children.begin(), children.end(), [&](NodeID left, NodeID right) {
                return canonical::compare(tree_[left].key, tree_[right].key) < 0;
            });
        }
        for (std::size_t i = 0; i < children.size(); ++i) {
            std::string before = (i == 0 ? "" : ",") + lineBreak(level + 1);
            if (isObject)
                before += quoted(tree_[children[i]].key) + (style_.isPretty() ? ": " : ":");
            pieces.push_back({before, level});
            pieces.push_back({children[i], level + 1});
        }
        pieces.push_back({(children.empty() ? "" : lineBreak(level)) + (isObject ? "}" : "]"), level});
        return pieces;
    }

    std::string lineBreak(int level) const {
        std::string result;
        if (style_.isPretty()) {
            result = "\n";
            for (int i = 0; i < level; ++i)
                result += JSONStyle::unit(*style_.prettyIndent());
        }
        return result;
    }

    const NaiveTree& tree_;
    JSONStyle style_;
    std::vector<Piece> pending_;
    std::string output_;
};

} // namespace

std::string naiveText(const NaiveTree& tree, NodeID from, const JSONStyle& style) {
    return NaiveWriter(tree, style).write(from);
}

JSONStyle naiveStyle(std::string_view text) {
    text = text.substr(0, 65'536);
    bool hasUnindentedLine = false;
    for (auto lineFeed = text.find('\n'); lineFeed != text.npos; lineFeed = text.find('\n')) {
        text.remove_prefix(lineFeed + 1);
        const std::string_view line = text.substr(0, text.find('\n'));
        const auto contentStart = line.find_first_not_of(" \t\r");
        if (contentStart == line.npos)
            continue;
        const std::string_view indentation = line.substr(0, contentStart);
        if (indentation.contains('\t'))
            return JSONStyle::pretty(JSONStyle::Indent::tab, false);
        const auto spaces = std::count(indentation.begin(), indentation.end(), ' ');
        if (spaces == 4)
            return JSONStyle::pretty(JSONStyle::Indent::fourSpaces, false);
        if (spaces > 0)
            return JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false);
        hasUnindentedLine = true;
    }
    return hasUnindentedLine ? JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false) : JSONStyle::compact();
}

} // namespace quelm::test
