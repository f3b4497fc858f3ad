#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/ConversionError.h"
#include "Quelm/Documents/DocumentConfiguration.h"
#include "Quelm/Documents/DocumentRecorder.h"
#include "Quelm/Documents/EditorMode.h"
#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/Foundation/Disposal.h"
#include "Quelm/Foundation/StateToken.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/SharedText.h"

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace quelm {

class TextStorage;
enum class EditedMask : std::uint8_t;
class UndoManager;

/// One open JSON file: its content, the editor that shows it, and the revision by which views learn that the whole
/// content was replaced. While a text editor shows it, what is typed is in that editor's text storage, the text buffer,
/// until it is committed to the content. A property set to the value it already holds announces nothing. For the main
/// thread, except the functions that are declared static.
class JSONDocument : public QObject {
    Q_OBJECT

public:
    /// A new document: an empty object, shown as a tree.
    explicit JSONDocument(
        std::shared_ptr<DocumentConfiguration> configuration = std::make_shared<DocumentConfiguration>());
    ~JSONDocument() override;

    /// The same object for the document's whole life.
    DocumentConfiguration& configuration() const { return *configuration_; }

    /// Without the edits of the text buffer that are not committed.
    const JSONContent& content() const { return content_; }
    /// Another form of the same state, as a parse or a conversion makes it: the state token stays.
    void setContent(JSONContent content);

    EditorMode mode() const { return mode_; }

    /// From 0, and only ever one more. Whatever is derived from the whole content is kept under this number.
    std::int64_t revision() const { return revision_; }

    /// The name offered for copies: that of the file without its extension, or "Sin título".
    QString baseName() const { return configuration_->baseName(); }

    /// What a document opens and writes: MIME types and the pattern of file names.
    static const QStringList& readableContentTypes();
    static const QStringList& writableContentTypes();
    static const QString& fileNamePattern();

    /// The content of a file's bytes. Invalid JSON is a content too, with its error; bytes that are not UTF-8 are not.
    /// O(n); for any thread.
    static std::expected<JSONContent, JSONParseError> read(SharedText bytes, std::stop_token stop = {});

    /// Installs what was read and chooses the editor by the user's preference: the text when it says so or when there
    /// is no tree, else the tree. The text buffer and its edits are dropped, and the document counts as unmodified.
    /// Steps to undo name places of the old content: whoever keeps them drops them on `didApply`.
    void apply(JSONContent snapshot);

    /// The same for what the file holds after somebody else has changed it: the editor stays, unless there is no tree to
    /// show.
    void reload(JSONContent snapshot);

    /// Installs a content that its file does not hold, in that editor, which must be able to show it: the document
    /// counts as modified until it is saved. Otherwise as `apply`.
    void applyUnsaved(JSONContent content, EditorMode mode);

    /// The content as it would be saved now: edits of the text buffer are committed first.
    JSONContent snapshot();

    /// The bytes of a file that holds the snapshot: its text as it is, else its tree in its style, else none. O(n); for
    /// any thread.
    static SharedText fileContents(const JSONContent& snapshot);

    // Editing.

    /// The text storage of the text editor that shows the document; null while none does.
    const std::shared_ptr<TextStorage>& textBuffer() const { return textBuffer_; }
    /// `buffer` must hold the content's text. Nothing may be left to be committed from another one.
    void attachTextBuffer(std::shared_ptr<TextStorage> buffer);
    /// What the buffer holds beyond the content is lost.
    void dropTextBuffer();

    /// Whether the text buffer holds edits that the content's text does not have.
    bool isTextBufferEdited() const { return isTextBufferEdited_; }
    /// The user edited the text buffer, undid or redid an edit there: to be called right after every such change, and
    /// before its undo step is registered. Moves the state token, and drops the tree or the error of the text before.
    void noteTextBufferEdited();
    /// Makes the text buffer's edits, if there are any, the content's text; the tree and the error of the old text go.
    /// O(1): the text is shared.
    void commitTextBuffer();

    /// Replaces the whole content: a step "Formato" of the undo manager, which is held weakly; without one, a change
    /// that cannot be undone. Edits of the text buffer are committed first, and the buffer shows the new text. O(log n)
    /// for a text whose places were asked for or prepared (`TextRope::prepare`) before.
    void replaceContent(JSONContent newContent, UndoManager* undoManager,
                        ContentOrigin origin = ContentOrigin::unknown);

    /// How a change of the mode ended.
    using ModeChanged = std::function<void(const std::expected<void, ConversionError>&)>;
    /// Converts the content for the other editor and switches to it, as the text is (whether valid or not) or with the
    /// tree parsed from it. Edits of the text buffer are committed first; the conversion runs on another thread, and
    /// then content, mode and revision change, in this order, and `finished` is called. When the conversion fails
    /// nothing has changed. It counts as cancelled when the document was edited or replaced meanwhile, which whoever
    /// shows the document prevents. The mode that there is already is a success at once.
    ///
    /// Letting go of the task cancels the change without a word. The state token stays; the steps to undo name places
    /// in the form of before: whoever keeps them drops them.
    BackgroundTask setMode(EditorMode newMode, ModeChanged finished);

    /// Applies edits to the content's tree and returns the list that undoes them. The tree, which must be there, is the
    /// truth from then on: the text goes. The revision stays, since whoever edits knows what; the state token moves,
    /// and the step is to be registered right after. Throws what `JSONTree::apply` throws, without any effect. What it
    /// costs follows the edits, also while snapshots share the tree.
    std::vector<TreeEdit> applyTreeEdits(std::span<const TreeEdit> edits);

    struct AppliedTreeChange {
        TreeChange change;
        /// The edits that undo it.
        std::vector<TreeEdit> inverse;
    };
    /// Lets `prepare` prepare a change of the content's tree, which must be there, and applies it likewise. Nothing
    /// happens when it prepares none (nodes that it stored meanwhile stay in the store, where they do no harm), or
    /// throws.
    std::optional<AppliedTreeChange>
    applyTreeChange(const std::function<std::optional<TreeChange>(JSONTree&)>& prepare);

    // Whether it is saved.

    /// Names the state of what would be saved. Whoever changes the content by other ways than those above advances it.
    StateToken& stateToken() { return stateToken_; }
    /// Whether the state is another than that of the last save or load.
    bool isModified() const { return stateToken_.current() != savedToken_; }
    /// A snapshot taken while the state had that token is now what the file holds.
    void noteSaved(StateToken::Value token);
    /// No file holds the state any more: the document counts as modified until it is saved.
    void noteUnsaved();

    /// Who is told of every change from now on; null for nobody. Held weakly: it must take itself away in time.
    void setRecorder(DocumentRecorder* recorder);
    /// The number of the content, see `ContentReplacement`.
    std::int64_t contentNumber() const { return contentNumber_; }

Q_SIGNALS:
    void contentChanged();
    void modeChanged();
    void revisionChanged();
    void isModifiedChanged();
    /// The last thing that `apply` does.
    void didApply();

private:
    /// The content of before; when both are the same, the one that is not needed.
    [[nodiscard]] DisposedInBackground<JSONContent> exchangeContent(JSONContent content);
    enum class Saved : std::uint8_t { no, yes };
    void install(JSONContent snapshot, EditorMode mode, Saved saved);
    void replaceContent(JSONContent newContent, UndoManager* undoManager, const ContentReplacement& replacement);
    std::vector<TreeEdit> applyRecorded(std::span<const TreeEdit> edits);
    void recordTextEdit(EditedMask mask, TextRange range);
    void finishModeChange(EditorMode newMode, JSONContent converted);
    void changeMode(EditorMode mode);
    void dropParsed();
    void advanceRevision();
    void announceModified();

    const std::shared_ptr<DocumentConfiguration> configuration_;
    JSONContent content_ = JSONContent::empty();
    EditorMode mode_ = EditorMode::tree;
    std::int64_t revision_ = 0;

    std::shared_ptr<TextStorage> textBuffer_;
    bool isTextBufferEdited_ = false;
    StateToken stateToken_;
    /// Absent when no file holds any state that the document can come back to.
    std::optional<StateToken::Value> savedToken_ = stateToken_.current();
    std::int64_t contentNumber_ = 1;
    std::int64_t lastContentNumber_ = 1;
    DocumentRecorder* recorder_ = nullptr;
    /// What the text buffer held when the recorder was last told of it, while there is one to tell.
    TextRope recordedText_;
    bool isReplacingContent_ = false;
    bool isAnnouncedModified_ = false;
};

} // namespace quelm
