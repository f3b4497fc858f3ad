#include "Tests/JSONCore/Support/Printing.h"

#include <array>
#include <ostream>
#include <sstream>

namespace quelm {

std::ostream& operator<<(std::ostream& out, NodeKind kind) {
    return out << test::nameOf(kind);
}

std::ostream& operator<<(std::ostream& out, NodeID id) {
    return out << '#' << id.raw;
}

std::ostream& operator<<(std::ostream& out, const JSONParseError& error) {
    return out << '"' << error.message << "\" at offset " << error.offset << ", line " << error.line << ", column "
               << error.column;
}

std::ostream& operator<<(std::ostream& out, const JSONStyle& style) {
    if (style.isCompact())
        return out << "compact";
    return out << "pretty(" << JSONStyle::rawValue(*style.prettyIndent()) << (style.sortsKeys() ? ", sorted)" : ")");
}

std::ostream& operator<<(std::ostream& out, const TreeEdit& edit) {
    if (const auto* setKey = edit.asSetKey())
        return out << "setKey(" << setKey->id << ", \"" << setKey->key.view() << "\")";
    if (const auto* setValue = edit.asSetValue())
        return out << "setValue(" << setValue->id << ", " << setValue->kind << ", \"" << setValue->text.view() << "\")";
    if (const auto* insert = edit.asInsert())
        return out << "insert(" << insert->id << ", " << insert->parent << ", " << insert->at << ")";
    return out << "remove(" << edit.id() << ")";
}

std::ostream& operator<<(std::ostream& out, const TreeChange& change) {
    out << '[';
    for (const TreeEdit& edit : change.edits)
        out << edit << "; ";
    out << "] focus ";
    if (change.focus)
        return out << *change.focus;
    return out << "none";
}

std::ostream& operator<<(std::ostream& out, const TreeRow::Label& label) {
    if (label.isRoot())
        return out << '$';
    if (const std::string* key = label.asKey())
        return out << '"' << *key << '"';
    return out << '[' << *label.asIndex() << ']';
}

std::ostream& operator<<(std::ostream& out, const TreeRow& row) {
    return out << row.id << ' ' << test::describe(row);
}

namespace test {

std::string_view nameOf(NodeKind kind) {
    static constexpr std::array<std::string_view, 6> names{"object", "array", "string", "number", "bool", "null"};
    return names[static_cast<std::size_t>(kind)];
}

std::string describe(const TreeRow& row) {
    std::ostringstream line;
    line << std::string(2 * static_cast<std::size_t>(row.depth), ' ') << row.label << (row.isDuplicateKey ? "* " : " ")
         << row.kind;
    if (!row.value.empty())
        line << ' ' << row.value;
    if (isContainer(row.kind) || row.childCount != 0)
        line << ' ' << row.childCount;
    if (row.isExpanded)
        line << " open";
    return line.str();
}

} // namespace test
} // namespace quelm
