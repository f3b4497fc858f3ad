#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/DocumentConfiguration.h"
#include "Quelm/Documents/EditorMode.h"
#include "TextCore/SharedText.h"

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <expected>
#include <memory>
#include <stop_token>

namespace quelm {

/// One open JSON file: its content, the editor that shows it, and the revision by which views learn that the whole
/// content was replaced. A property set to the value it already holds announces nothing. For the main thread, except
/// the functions that are declared static.
class JSONDocument : public QObject {
    Q_OBJECT

public:
    /// A new document: an empty object, shown as a tree.
    explicit JSONDocument(
        std::shared_ptr<DocumentConfiguration> configuration = std::make_shared<DocumentConfiguration>());

    /// The same object for the document's whole life.
    DocumentConfiguration& configuration() const { return *configuration_; }

    const JSONContent& content() const { return content_; }
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
    /// is no tree, else the tree.
    void apply(JSONContent snapshot);

    /// The content as it would be saved now.
    JSONContent snapshot();

    /// The bytes of a file that holds the snapshot: its text as it is, else its tree in its style, else none. O(n); for
    /// any thread.
    static SharedText fileContents(const JSONContent& snapshot);

Q_SIGNALS:
    void contentChanged();
    void modeChanged();
    void revisionChanged();

private:
    void changeMode(EditorMode mode);
    void advanceRevision();

    const std::shared_ptr<DocumentConfiguration> configuration_;
    JSONContent content_ = JSONContent::empty();
    EditorMode mode_ = EditorMode::tree;
    std::int64_t revision_ = 0;
};

} // namespace quelm
