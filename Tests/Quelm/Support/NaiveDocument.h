#pragma once

#include "JSONCore/JSONScalar.h"
#include "JSONCore/JSONTree.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quelm {

/// A JSON value as plainly as it can be written down. Keys and strings are letters, digits and spaces.
struct NaiveValue {
    NodeKind kind = NodeKind::null;
    std::string key;
    std::string scalar;
    std::vector<NaiveValue> children;

    static NaiveValue of(const JSONTree& tree, NodeID id) {
        NaiveValue value{tree.kind(id), std::string(tree.key(id)), std::string(tree.scalar(id)), {}};
        for (NodeID child : tree.children(id))
            value.children.push_back(of(tree, child));
        return value;
    }

    std::string json() const {
        if (kind == NodeKind::null)
            return "null";
        if (!isContainer(kind))
            return kind == NodeKind::string ? '"' + scalar + '"' : scalar;
        const bool isObject = kind == NodeKind::object;
        std::string text;
        for (const NaiveValue& child : children) {
            text += text.empty() ? "" : ",";
            text += (isObject ? '"' + child.key + "\":" : std::string()) + child.json();
        }
        return isObject ? "{" + text + "}" : "[" + text + "]";
    }
};

/// A document with the line of its changes, each kept as the whole value before it and after it. Places are positions
/// on the way down from the top-level value. An operation that does not apply leaves everything as it is.
class NaiveDocument {
public:
    using Path = std::vector<std::int64_t>;
    using Place = std::optional<Path>;

    struct Step {
        std::string name;
        NaiveValue before;
        NaiveValue after;
        /// What undoing and redoing the step selects; absent for nothing else than before.
        Place selectedByUndo = std::nullopt;
        Place selectedByRedo = std::nullopt;
        /// Replaces the content rather than editing its tree.
        bool isReplacement = false;
        std::uint64_t stateAfter = 0;
    };

    explicit NaiveDocument(NaiveValue root) : root_(std::move(root)) {}

    const NaiveValue& root() const { return root_; }
    const NaiveValue& at(const Path& path) const {
        const NaiveValue* value = &root_;
        for (std::int64_t index : path)
            value = &value->children.at(static_cast<std::size_t>(index));
        return *value;
    }

    const Step* undoable() const { return done_ > 0 ? &steps_[done_ - 1] : nullptr; }
    const Step* redoable() const { return done_ < steps_.size() ? &steps_[done_] : nullptr; }

    void save() { savedState_ = state(); }
    bool isModified() const { return state() != savedState_; }

    // Each returns the place of what it is about, or nothing when it does not apply.

    Place insert(const Path& target, bool asChild) {
        return place({NodeKind::string, {}, {}, {}}, "clave", target, asChild, "Insertar");
    }
    Place paste(NaiveValue value, const Path& target) {
        value.key.clear();
        return place(std::move(value), "pegado", target, isContainer(at(target).kind), "Pegar JSON");
    }
    Place duplicate(const Path& path) {
        if (path.empty())
            return {};
        NaiveValue copy = at(path);
        const NaiveValue& parent = at(parentOf(path));
        if (parent.kind == NodeKind::object)
            copy.key = uniqueKey(copy.key + " copia", parent);
        return add(std::move(copy), after(path), "Duplicar");
    }
    Place move(const Path& path, std::int64_t offset) {
        if (path.empty() || offset == 0)
            return {};
        const std::int64_t index = path.back() + offset;
        if (index < 0 || index >= std::ssize(at(parentOf(path)).children))
            return {};
        const NaiveValue before = root_;
        std::vector<NaiveValue>& siblings = siblingsAt(path);
        const NaiveValue moved = siblings[static_cast<std::size_t>(path.back())];
        siblings.erase(siblings.begin() + path.back());
        siblings.insert(siblings.begin() + index, moved);
        Path target = path;
        target.back() = index;
        note({"Mover", before, root_, path, target});
        return target;
    }
    /// Returns the place of what is selected afterwards.
    Place remove(const Path& path) {
        if (path.empty())
            return {};
        const NaiveValue before = root_;
        std::vector<NaiveValue>& siblings = siblingsAt(path);
        siblings.erase(siblings.begin() + path.back());
        Path next = path;
        if (siblings.empty())
            next = parentOf(path);
        else if (path.back() == std::ssize(siblings))
            --next.back();
        note({"Eliminar", before, root_, path, std::nullopt});
        return next;
    }
    Place changeType(const Path& path, NodeKind kind) {
        NaiveValue value = at(path);
        if (value.kind == kind)
            return {};
        value.scalar = JSONScalar::convert(value.scalar, value.kind, kind);
        value.kind = kind;
        value.children.clear();
        return replace(path, std::move(value), "Cambiar tipo");
    }
    Place setKey(const Path& path, const std::string& key) {
        NaiveValue value = at(path);
        value.key = key;
        return replace(path, std::move(value), "Renombrar clave");
    }
    Place setScalar(const Path& path, const std::string& scalar) {
        NaiveValue value = at(path);
        value.scalar = scalar;
        return replace(path, std::move(value), "Editar valor");
    }

    void replaceContent() { note({.name = "Formato", .before = root_, .after = root_, .isReplacement = true}); }

    void undo() { root_ = steps_[--done_].before; }
    void redo() { root_ = steps_[done_++].after; }

private:
    NaiveValue& valueAt(const Path& path) { return const_cast<NaiveValue&>(at(path)); }
    std::vector<NaiveValue>& siblingsAt(const Path& path) { return valueAt(parentOf(path)).children; }
    static Path parentOf(Path path) {
        path.pop_back();
        return path;
    }
    static Path after(Path path) {
        ++path.back();
        return path;
    }
    static bool hasMember(const NaiveValue& object, const std::string& key) {
        return std::ranges::find(object.children, key, &NaiveValue::key) != object.children.end();
    }
    static std::string uniqueKey(const std::string& stem, const NaiveValue& object) {
        std::string key = stem;
        for (int number = 2; hasMember(object, key); ++number)
            key = stem + " " + std::to_string(number);
        return key;
    }

    Place place(NaiveValue value, const char* stem, const Path& target, bool asChild, const char* name) {
        Path path = target;
        if ((asChild || target.empty()) && isContainer(at(target).kind))
            path.push_back(std::ssize(at(target).children));
        else if (target.empty())
            return {};
        else
            path = after(target);
        const NaiveValue& parent = at(parentOf(path));
        if (parent.kind == NodeKind::object)
            value.key = uniqueKey(stem, parent);
        return add(std::move(value), path, name);
    }
    Place add(NaiveValue value, const Path& path, const char* name) {
        const NaiveValue before = root_;
        std::vector<NaiveValue>& siblings = siblingsAt(path);
        siblings.insert(siblings.begin() + path.back(), std::move(value));
        note({name, before, root_, std::nullopt, path});
        return path;
    }
    Place replace(const Path& path, NaiveValue value, const char* name) {
        const NaiveValue before = root_;
        valueAt(path) = std::move(value);
        note({name, before, root_, path, path});
        return path;
    }

    void note(Step step) {
        step.stateAfter = ++lastState_;
        steps_.resize(done_);
        steps_.push_back(std::move(step));
        ++done_;
    }
    std::uint64_t state() const { return done_ > 0 ? steps_[done_ - 1].stateAfter : 0; }

    NaiveValue root_;
    std::vector<Step> steps_;
    std::size_t done_ = 0;
    std::uint64_t lastState_ = 0;
    std::uint64_t savedState_ = 0;
};

} // namespace quelm
