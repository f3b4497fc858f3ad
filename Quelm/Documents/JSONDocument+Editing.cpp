#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "TextCore/Check.h"

#include <QPointer>
#include <QThreadPool>

#include <optional>
#include <utility>

namespace quelm {

namespace {

/// Lets go of a tree off the main thread: if nobody else holds it, freeing its nodes takes a time that grows with them.
void discard(std::optional<JSONTree> tree) {
    if (tree)
        QThreadPool::globalInstance()->start([tree = std::move(tree)]() mutable { tree.reset(); });
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

void JSONDocument::noteSaved(StateToken::Value token) {
    savedToken_ = token;
    announceModified();
}

void JSONDocument::announceModified() {
    if (std::exchange(isAnnouncedModified_, isModified()) != isModified())
        Q_EMIT isModifiedChanged();
}

} // namespace quelm
