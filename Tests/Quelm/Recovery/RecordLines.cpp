#include "Tests/Quelm/Recovery/RecordLines.h"

#include <vector>

namespace quelm {

namespace {

using namespace journal;

std::string quoted(const SharedText& text) {
    return "'" + std::string(text.view()) + "'";
}

std::string arrow(std::int64_t before, std::int64_t after) {
    return std::to_string(before) + "->" + std::to_string(after);
}

std::string name(EditorMode mode) {
    return std::string(rawValue(mode));
}

std::string name(const JSONStyle& style) {
    if (style.isCompact())
        return "compact";
    return std::string(JSONStyle::rawValue(*style.prettyIndent())) + (style.sortsKeys() ? " sorted" : "");
}

std::string name(const NodePath& path) {
    std::string text;
    for (const std::uint32_t index : path)
        text += (text.empty() ? "" : ".") + std::to_string(index);
    return text.empty() ? "top" : text;
}

std::string name(const std::vector<TextSource>& sources) {
    std::string text;
    for (const TextSource& source : sources) {
        text += ' ';
        if (source.origin == TextSource::Origin::literal)
            text += quoted(source.bytes);
        else
            text += (source.origin == TextSource::Origin::file ? "file@" : "removed@") +
                    std::to_string(source.location) + "+" + std::to_string(source.length);
    }
    return text;
}

struct EditLine {
    std::string operator()(const SetKey& edit) const { return "key " + name(edit.node) + " = " + quoted(edit.key); }
    std::string operator()(const SetValue& edit) const { return "set " + name(edit.node) + " = " + quoted(edit.text); }
    std::string operator()(const Remove& edit) const {
        return "remove " + name(edit.node) + " as " + std::to_string(edit.number);
    }
    std::string operator()(const InsertDetached& edit) const {
        return "attach " + std::to_string(edit.number) + " at " + name(edit.parent) + "[" +
               std::to_string(edit.index) + "]";
    }
    std::string operator()(const InsertNew& edit) const {
        return "insert " + quoted(edit.key) + ": " + std::string(edit.json.view()) + " at " + name(edit.parent) + "[" +
               std::to_string(edit.index) + "]";
    }
};

struct RecordLine {
    std::string operator()(const Base& base) const {
        std::string text = "base " + base.path.value_or("-") + " " + name(base.mode) + " " + name(base.style);
        if (base.checksum)
            text += " of " + std::to_string(base.checksum->size);
        if (base.recordsSince != 0)
            text += " before " + std::to_string(base.recordsSince);
        return text;
    }
    std::string operator()(const EditText& edit) const {
        return "text " + std::to_string(edit.location) + "-" + std::to_string(edit.removed) + name(edit.inserted);
    }
    std::string operator()(const EditTree& record) const {
        std::string text = "tree";
        for (const NodeEdit& edit : record.edits)
            text += (text.size() == 4 ? " " : "; ") + std::visit(EditLine(), edit);
        return text;
    }
    std::string operator()(const Reformat& change) const {
        return "reformat " + arrow(change.numberBefore, change.number) + " " + name(change.style);
    }
    std::string operator()(const Return& change) const { return "return " + arrow(change.numberBefore, change.number); }
    std::string operator()(const Replace& change) const {
        return "replace " + arrow(change.numberBefore, change.number) + " " + name(change.style) +
               (change.hasText ? " text" : "") + (change.hasTree ? " tree" : "") +
               (change.isTextMadeOfTree ? " made" : "") + name(change.text);
    }
    std::string operator()(const ChangeMode& change) const { return "mode " + name(change.mode); }
    std::string operator()(const Modified& change) const { return change.isModified ? "modified" : "unmodified"; }
    std::string operator()(const SaveOutcome& outcome) const { return outcome.isSaved ? "saved" : "not saved"; }
};

} // namespace

std::string lineOf(const journal::Record& record) {
    return std::visit(RecordLine(), record);
}

} // namespace quelm
