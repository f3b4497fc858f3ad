#pragma once

#include "FileCore/ContentChecksum.h"
#include "JSONCore/JSONStyle.h"
#include "JSONCore/NodeKind.h"
#include "Quelm/Documents/EditorMode.h"
#include "TextCore/SharedText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What the records of a document's journal say. Together they lead from a state that is known, the base, to that of
/// the document when the last of them was written. Nodes are named by where they are, never by their ids, which
/// another parse may give differently; contents and detached nodes by numbers that their records give them.
namespace quelm::journal {

/// The place of a node: the index among its siblings on each level, from the holder of the top-level value on. Empty
/// for the holder itself.
using NodePath = std::vector<std::uint32_t>;

/// The document, unmodified, and a state from which later records lead on: the first record of every journal, and one
/// again whenever a save is about to make the document's file.
///
/// Which of several bases to begin with is told by the file: the last of those that count whose file has the checksum.
/// All count that no `SaveOutcome` has ruled out. Records that come after the state of a base, up to the outcome of its
/// save, hold from each base before it as well: they name neither contents or detached nodes that were kept before that
/// state nor bytes of a file.
struct Base {
    /// Of the file, absolute; absent for a document without one.
    std::optional<std::string> path;
    /// Of what the file holds when the state is that of the file. Absent when it is not: the content is that of
    /// `JSONContent::empty`, for a new document, or until a `Replace` follows that gives it whole, whatever has become
    /// of the file.
    std::optional<ContentChecksum> checksum;
    EditorMode mode = EditorMode::tree;
    JSONStyle style = JSONStyle::compact();
    /// How many of the records right before this one come after the state: changes made while the save was under way.
    /// 0 in the first record.
    std::uint64_t recordsSince = 0;
};

/// Bytes of a text: some given, some copied from what is known when the record is read.
struct TextSource {
    enum class Origin : std::uint8_t {
        literal,
        removed, ///< the bytes that the same record removes
        file,    ///< the bytes of the base's file
    };
    Origin origin = Origin::literal;
    /// Of a literal.
    SharedText bytes;
    /// Of a copy, in bytes.
    std::int64_t location = 0;
    std::int64_t length = 0;
};

/// The text in the text editor: `removed` bytes at `location` give way to others.
struct EditText {
    std::int64_t location = 0;
    std::int64_t removed = 0;
    std::vector<TextSource> inserted;
};

/// Edits of the tree, in order; each path is right in the state in which its edit is applied.
struct SetKey {
    NodePath node;
    SharedText key;
};
struct SetValue {
    NodePath node;
    NodeKind kind = NodeKind::null;
    SharedText text;
};
/// Gives the detached subtree a number by which a later edit of the same content may attach it again.
struct Remove {
    NodePath node;
    std::int64_t number = 0;
};
struct InsertDetached {
    NodePath parent;
    std::int64_t index = 0;
    std::int64_t number = 0;
};
/// A new subtree; `json` is compact JSON.
struct InsertNew {
    NodePath parent;
    std::int64_t index = 0;
    SharedText key;
    SharedText json;
};
using NodeEdit = std::variant<SetKey, SetValue, Remove, InsertDetached, InsertNew>;

/// The text is gone afterwards.
struct EditTree {
    std::vector<NodeEdit> edits;
};

/// The content is kept under `numberBefore`, and what `ContentConversion::reformat` makes of it takes its place.
struct Reformat {
    std::int64_t numberBefore = 0;
    std::int64_t number = 0;
    JSONStyle style = JSONStyle::compact();
};

/// The content is kept under `numberBefore`, and the one that is kept under `number` takes its place.
struct Return {
    std::int64_t numberBefore = 0;
    std::int64_t number = 0;
};

/// A whole content takes the place of the one before, which is kept under `numberBefore` if that is another number.
struct Replace {
    std::int64_t numberBefore = 0;
    std::int64_t number = 0;
    JSONStyle style = JSONStyle::compact();
    /// Which parts the content has. A tree without a text, or with the text that it has in the style, is given by
    /// compact JSON in document order; any other content by its text, from which the tree, if there is one, was parsed.
    bool hasText = false;
    bool hasTree = false;
    bool isTextMadeOfTree = false;
    std::vector<TextSource> text;
};

/// As `ContentConversion::toText` or `toTree`.
struct ChangeMode {
    EditorMode mode = EditorMode::tree;
};

/// Whether there is anything to recover. Nothing in the state of a base; something after every `EditText`, `EditTree`,
/// `Reformat`, `Return` and `Replace`, until this says otherwise; a `ChangeMode` makes no difference.
struct Modified {
    bool isModified = false;
};

/// How the save ended whose base is the last before this, if there was one since the last outcome: when the file was
/// saved, no base before that one counts any more, else that one does not.
struct SaveOutcome {
    bool isSaved = false;
};

using Record = std::variant<Base, EditText, EditTree, Reformat, Return, Replace, ChangeMode, Modified, SaveOutcome>;

/// The bytes of a record. Throws std::bad_alloc.
std::string encode(const Record& record);

/// The record of bytes, whatever they are: absent unless they are exactly what `encode` makes of it. Texts are slices of
/// the bytes and well-formed UTF-8 (paths and literals too); nothing else is checked. O(n), and no more memory than some
/// times that.
std::optional<Record> decode(const SharedText& bytes);

} // namespace quelm::journal
