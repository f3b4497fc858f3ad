#pragma once

#include "JSONCore/JSONContent.h"
#include "JSONCore/TreeEdit.h"
#include "Quelm/Documents/EditorMode.h"
#include "TextCore/TextRope.h"

#include <cstdint>

namespace quelm {

/// Where a content that replaces another comes from.
enum class ContentOrigin : std::uint8_t {
    unknown,
    /// It is what `ContentConversion::reformat` makes of the content before it, in the style that it has itself.
    reformatting,
};

/// A whole content by which a document's content was replaced. Contents are numbered, from 1 on, each once in a
/// document's life; edits leave the number, and an undo brings back the content with its number.
struct ContentReplacement {
    ContentOrigin origin = ContentOrigin::unknown;
    std::int64_t numberBefore = 0;
    std::int64_t number = 0;
    /// Whether `number` was the document's before.
    bool isReturn = false;
};

/// What a document tells of every change of its content, in order and as it happens, so that the changes can be repeated
/// on another copy. It must not change the document. For the main thread.
class DocumentRecorder {
public:
    virtual ~DocumentRecorder() = default;

    /// In the text buffer, `removed` bytes from `location` of `before` gave way to `inserted` bytes there of `after`.
    virtual void didEditText(const TextRope& before, const TextRope& after, std::int64_t location, std::int64_t removed,
                             std::int64_t inserted) = 0;

    /// The tree is about to be edited; called for each edit of a list, in the state in which it is applied.
    virtual void willEditTree(const JSONTree& tree, const TreeEdit& edit) = 0;
    /// All edits that were told of since the last call are applied, and the text is gone; or the list failed, and
    /// nothing has changed.
    virtual void didEditTree(const JSONTree& tree) = 0;
    virtual void didFailToEditTree() = 0;

    /// The content, and the text buffer with it.
    virtual void didReplaceContent(const ContentReplacement& replacement, const JSONContent& content) = 0;

    /// The content was converted for the other editor, as `ContentConversion::toText` or `toTree` does.
    virtual void didChangeMode(EditorMode mode, const JSONContent& content) = 0;

    /// Whether there is anything to save, at the end of the change that made the difference.
    virtual void didChangeModified(bool isModified) = 0;

    /// A content was installed that was read from a file: what was recorded before belongs to another document.
    virtual void didApply() = 0;
};

} // namespace quelm
