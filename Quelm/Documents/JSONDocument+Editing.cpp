#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "TextCore/Check.h"

#include <QPointer>

#include <optional>
#include <utility>

namespace quelm {

void JSONDocument::attachTextBuffer(std::shared_ptr<TextStorage> buffer) {
    require(buffer != nullptr, "a text buffer that is attached is there");
    if (buffer == textBuffer_)
        return;
    require(!textBuffer_ || !isTextBufferEdited_, "the text buffer of before is committed");
    dropTextBuffer();
    textBuffer_ = std::move(buffer);
    connect(textBuffer_.get(), &TextStorage::didProcessEditing, this, &JSONDocument::recordTextEdit);
    recordedText_ = textBuffer_->text();
}

void JSONDocument::dropTextBuffer() {
    if (textBuffer_)
        textBuffer_->disconnect(this);
    textBuffer_.reset();
    recordedText_ = {};
    isTextBufferEdited_ = false;
}

void JSONDocument::recordTextEdit(EditedMask mask, TextRange range) {
    if (mask != EditedMask::characters)
        return;
    const TextRope before = std::exchange(recordedText_, textBuffer_->text());
    if (!recorder_ || isReplacingContent_)
        return;
    const std::int64_t location = recordedText_.summaryBeforeUTF16(range.location).bytes;
    const std::int64_t inserted = recordedText_.summaryBeforeUTF16(range.end()).bytes - location;
    const std::int64_t removed = before.byteCount() - (recordedText_.byteCount() - inserted);
    recorder_->didEditText(before, recordedText_, location, removed, inserted);
}

void JSONDocument::noteTextBufferEdited() {
    isTextBufferEdited_ = true;
    stateToken_.advance();
    dropParsed();
}

/// The tree or the error of a text that is not the document's any more: as large as all of it, and of no use to
/// anybody.
void JSONDocument::dropParsed() {
    if (!textBuffer_ || !content_.text || (!content_.tree && !content_.parseError))
        return;
    disposeInBackground(std::exchange(content_.tree, std::nullopt));
    content_.parseError.reset();
    Q_EMIT contentChanged();
}

void JSONDocument::commitTextBuffer() {
    if (!isTextBufferEdited_ || !textBuffer_)
        return;
    isTextBufferEdited_ = false;
    JSONContent content;
    content.text = textBuffer_->text();
    content.style = content_.style;
    setContent(std::move(content));
}

void JSONDocument::replaceContent(JSONContent newContent, UndoManager* undoManager, ContentOrigin origin) {
    const ContentReplacement replacement{
        .origin = origin, .numberBefore = contentNumber_, .number = ++lastContentNumber_, .isReturn = false};
    replaceContent(std::move(newContent), undoManager, replacement);
}

void JSONDocument::replaceContent(JSONContent newContent, UndoManager* undoManager,
                                  const ContentReplacement& replacement) {
    const QPointer<UndoManager> manager(undoManager);
    commitTextBuffer();
    // Moved rather than copied: its tree keeps the index of its keys.
    const DisposedInBackground<JSONContent> oldContent = exchangeContent(std::move(newContent));
    contentNumber_ = replacement.number;
    if (mode_ == EditorMode::text && textBuffer_ && content_.text) {
        isReplacingContent_ = true;
        textBuffer_->replaceCharacters({0, textBuffer_->length()}, *content_.text);
        isReplacingContent_ = false;
    }
    if (recorder_)
        recorder_->didReplaceContent(replacement, content_);
    stateToken_.advance();
    advanceRevision();
    if (!manager)
        return;
    manager->registerUndo<JSONDocument>(
        this, [oldContent, manager, number = replacement.numberBefore](JSONDocument& document) {
            document.replaceContent(oldContent.take(), manager,
                                    {.origin = ContentOrigin::unknown,
                                     .numberBefore = document.contentNumber_,
                                     .number = number,
                                     .isReturn = true});
        });
    manager->setActionName(tr("Formato"));
}

BackgroundTask JSONDocument::setMode(EditorMode newMode, ModeChanged finished) {
    if (newMode == mode_) {
        finished({});
        return {};
    }
    commitTextBuffer();
    const auto convert = newMode == EditorMode::text ? ContentConversion::toText : ContentConversion::toTree;
    const StateToken::Value token = stateToken_.current();
    const std::int64_t revision = revision_;
    return startInBackground(
        this, [convert, content = content_](const std::stop_token& stop) { return convert(content, stop); },
        [this, newMode, token, revision, finished = std::move(finished)](ContentConversion::Result converted) {
            // What was edited meanwhile is not in what was converted.
            if (stateToken_.current() != token || revision_ != revision) {
                disposeInBackground(std::move(converted));
                return finished(std::unexpected(ConversionError::cancelled()));
            }
            if (!converted)
                return finished(std::unexpected(std::move(converted.error())));
            finishModeChange(newMode, *std::move(converted));
            finished({});
        });
}

void JSONDocument::finishModeChange(EditorMode newMode, JSONContent converted) {
    setContent(std::move(converted));
    if (newMode == EditorMode::tree)
        dropTextBuffer();
    changeMode(newMode);
    if (recorder_)
        recorder_->didChangeMode(mode_, content_);
    advanceRevision();
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
    std::vector<TreeEdit> inverse = applyRecorded(change->edits);
    content_.parseError.reset();
    disposeInBackground(std::exchange(content_.text, std::nullopt));
    stateToken_.advance();
    Q_EMIT contentChanged();
    return AppliedTreeChange{.change = *std::move(change), .inverse = std::move(inverse)};
}

std::vector<TreeEdit> JSONDocument::applyRecorded(std::span<const TreeEdit> edits) {
    if (!recorder_)
        return content_.tree->apply(edits);
    try {
        std::vector<TreeEdit> inverse = content_.tree->apply(
            edits, [this](const JSONTree& tree, const TreeEdit& edit) { recorder_->willEditTree(tree, edit); });
        recorder_->didEditTree(*content_.tree);
        return inverse;
    } catch (...) {
        recorder_->didFailToEditTree();
        throw;
    }
}

void JSONDocument::setRecorder(DocumentRecorder* recorder) {
    recorder_ = recorder;
}

void JSONDocument::noteSaved(StateToken::Value token) {
    savedToken_ = token;
    announceModified();
}

void JSONDocument::noteUnsaved() {
    savedToken_.reset();
    announceModified();
}

void JSONDocument::announceModified() {
    if (std::exchange(isAnnouncedModified_, isModified()) == isModified())
        return;
    if (recorder_)
        recorder_->didChangeModified(isModified());
    Q_EMIT isModifiedChanged();
}

} // namespace quelm
