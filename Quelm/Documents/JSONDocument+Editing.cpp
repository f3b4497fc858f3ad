#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "TextCore/Check.h"

#include <QPointer>
#include <QThreadPool>

#include <new>
#include <optional>
#include <utility>

namespace quelm {

namespace {

/// Lets go of a tree or a text off the main thread: if nobody else holds it, freeing it takes a time that grows with
/// it.
template <class Value>
void discard(std::optional<Value> value) {
    if (!value)
        return;
    try {
        QThreadPool::globalInstance()->start([value = std::move(value)]() mutable { value.reset(); });
    } catch (const std::bad_alloc&) {
        // It is freed here, then.
    }
}

} // namespace

void JSONDocument::attachTextBuffer(std::shared_ptr<TextStorage> buffer) {
    require(buffer != nullptr, "a text buffer that is attached is there");
    if (buffer == textBuffer_)
        return;
    require(!textBuffer_ || !isTextBufferEdited_, "the text buffer of before is committed");
    textBuffer_ = std::move(buffer);
    isTextBufferEdited_ = false;
}

void JSONDocument::dropTextBuffer() {
    textBuffer_.reset();
    isTextBufferEdited_ = false;
}

void JSONDocument::noteTextBufferEdited() {
    isTextBufferEdited_ = true;
    stateToken_.advance();
}

void JSONDocument::commitTextBuffer() {
    if (!isTextBufferEdited_ || !textBuffer_)
        return;
    isTextBufferEdited_ = false;
    JSONContent content;
    content.text = textBuffer_->text();
    content.style = content_.style;
    std::optional<JSONTree> oldTree = content_.tree;
    setContent(std::move(content));
    discard(std::move(oldTree));
}

void JSONDocument::replaceContent(JSONContent newContent, UndoManager* undoManager) {
    const QPointer<UndoManager> manager(undoManager);
    commitTextBuffer();
    JSONContent oldContent = content_;
    setContent(std::move(newContent));
    if (mode_ == EditorMode::text && textBuffer_ && content_.text)
        textBuffer_->replaceCharacters({0, textBuffer_->length()}, *content_.text);
    stateToken_.advance();
    advanceRevision();
    if (!manager)
        return;
    manager->registerUndo<JSONDocument>(this, [oldContent = std::move(oldContent), manager](JSONDocument& document) {
        document.replaceContent(oldContent, manager);
    });
    manager->setActionName(tr("Formato"));
}

std::vector<TreeEdit> JSONDocument::applyTreeEdits(std::span<const TreeEdit> edits) {
    const auto applied =
        applyTreeChange([edits](JSONTree&) { return TreeChange{.edits = {edits.begin(), edits.end()}, .focus = {}}; });
    return applied->inverse;
}

std::optional<JSONDocument::AppliedTreeChange>
JSONDocument::applyTreeChange(const std::function<std::optional<TreeChange>(JSONTree&)>& prepare) {
    require(content_.tree.has_value(), "a tree that is edited is there");
    // Edited in place: what a snapshot shares is copied block by block, and the tree keeps its indexes.
    std::optional<TreeChange> change = prepare(*content_.tree);
    if (!change)
        return std::nullopt;
    std::vector<TreeEdit> inverse = content_.tree->apply(change->edits);
    stateToken_.advance();
    content_.parseError.reset();
    discard(std::exchange(content_.text, std::nullopt));
    Q_EMIT contentChanged();
    return AppliedTreeChange{.change = *std::move(change), .inverse = std::move(inverse)};
}

void JSONDocument::noteSaved(StateToken::Value token) {
    savedToken_ = token;
    announceModified();
}

void JSONDocument::announceModified() {
    if (std::exchange(isAnnouncedModified_, isModified()) != isModified())
        Q_EMIT isModifiedChanged();
}

} // namespace quelm
