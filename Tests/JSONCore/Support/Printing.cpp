#include "Tests/JSONCore/Support/Printing.h"

#include <array>
#include <ostream>
#include <sstream>

namespace quelm {

void PrintTo(NodeKind kind, std::ostream* out) {
    *out << test::nameOf(kind);
}

void PrintTo(NodeID id, std::ostream* out) {
    *out << '#' << id.raw;
}

void PrintTo(const JSONParseError& error, std::ostream* out) {
    *out << '"' << error.message << "\" at offset " << error.offset << ", line " << error.line << ", column "
         << error.column;
}

void PrintTo(const JSONStyle& style, std::ostream* out) {
    if (style.isCompact())
        *out << "compact";
    else
        *out << "pretty(" << JSONStyle::rawValue(*style.prettyIndent()) << (style.sortsKeys() ? ", sorted)" : ")");
}

void PrintTo(const TreeEdit& edit, std::ostream* out) {
    if (const auto* setKey = edit.asSetKey())
        *out << "setKey(#" << setKey->id.raw << ", \"" << setKey->key.view() << "\")";
    else if (const auto* setValue = edit.asSetValue())
        *out << "setValue(#" << setValue->id.raw << ", " << test::nameOf(setValue->kind) << ", \""
             << setValue->text.view() << "\")";
    else if (const auto* insert = edit.asInsert())
        *out << "insert(#" << insert->id.raw << ", #" << insert->parent.raw << ", " << insert->at << ")";
    else
        *out << "remove(#" << edit.id().raw << ")";
}

void PrintTo(const TreeChange& change, std::ostream* out) {
    *out << '[';
    for (const TreeEdit& edit : change.edits) {
        PrintTo(edit, out);
        *out << "; ";
    }
    *out << "] focus ";
    if (change.focus)
        PrintTo(*change.focus, out);
    else
        *out << "none";
}

void PrintTo(const TreeRow::Label& label, std::ostream* out) {
    if (label.isRoot())
        *out << '$';
    else if (const std::string* key = label.asKey())
        *out << '"' << *key << '"';
    else
        *out << '[' << *label.asIndex() << ']';
}

void PrintTo(const TreeRow& row, std::ostream* out) {
    *out << '#' << row.id.raw << ' ' << test::describe(row);
}

namespace test {

std::string_view nameOf(NodeKind kind) {
    static constexpr std::array<std::string_view, 6> names{"object", "array", "string", "number", "bool", "null"};
    return names[static_cast<std::size_t>(kind)];
}

std::string describe(const TreeRow& row) {
    std::ostringstream line;
    line << std::string(2 * static_cast<std::size_t>(row.depth), ' ');
    PrintTo(row.label, &line);
    line << (row.isDuplicateKey ? "* " : " ") << nameOf(row.kind);
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
