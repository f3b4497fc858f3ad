#include "Quelm/Documents/JSONDocument.h"

#include "JSONCore/JSONSerializer.h"
#include "Quelm/Documents/Revision.h"
#include "Quelm/Documents/SameContent.h"
#include "Quelm/Foundation/Preferences.h"
#include "TextCore/Check.h"

#include <utility>

namespace quelm {

namespace {

EditorMode openingMode(const JSONContent& content) {
    const bool asText = Preferences::initialMode() == Preferences::InitialMode::text || !content.tree;
    return asText ? EditorMode::text : EditorMode::tree;
}

} // namespace

JSONDocument::JSONDocument(std::shared_ptr<DocumentConfiguration> configuration)
    : configuration_(std::move(configuration)) {
    require(configuration_ != nullptr, "a document has a configuration");
    connect(&stateToken_, &StateToken::currentChanged, this, &JSONDocument::announceModified);
}

JSONDocument::~JSONDocument() {
    disposeInBackground(std::move(content_));
}

const QStringList& JSONDocument::readableContentTypes() {
    static const QStringList types{QStringLiteral("application/json")};
    return types;
}

const QStringList& JSONDocument::writableContentTypes() {
    return readableContentTypes();
}

const QString& JSONDocument::fileNamePattern() {
    static const QString pattern = QStringLiteral("*.json");
    return pattern;
}

std::expected<JSONContent, JSONParseError> JSONDocument::read(SharedText bytes, std::stop_token stop) {
    std::expected<JSONContent, JSONParseError> content = JSONContent::fromData(std::move(bytes), std::move(stop));
    // A text editor asks for places at once.
    if (content && openingMode(*content) == EditorMode::text)
        content->text->prepare();
    return content;
}

void JSONDocument::setContent(JSONContent content) {
    const auto oldContent = exchangeContent(std::move(content));
}

DisposedInBackground<JSONContent> JSONDocument::exchangeContent(JSONContent content) {
    // The one that is there may know more, as the index of its keys.
    if (isSameContent(content_, content))
        return DisposedInBackground(std::move(content));
    DisposedInBackground oldContent(std::exchange(content_, std::move(content)));
    Q_EMIT contentChanged();
    return oldContent;
}

void JSONDocument::apply(JSONContent snapshot) {
    const EditorMode mode = openingMode(snapshot);
    install(std::move(snapshot), mode, Saved::yes);
}

void JSONDocument::reload(JSONContent snapshot) {
    const EditorMode mode = snapshot.tree ? mode_ : EditorMode::text;
    install(std::move(snapshot), mode, Saved::yes);
}

void JSONDocument::applyUnsaved(JSONContent content, EditorMode mode) {
    require(mode == EditorMode::tree ? content.tree.has_value() : content.text.has_value(),
            "a content that is installed can be shown in its mode");
    install(std::move(content), mode, Saved::no);
}

void JSONDocument::install(JSONContent snapshot, EditorMode mode, Saved saved) {
    contentNumber_ = ++lastContentNumber_;
    setContent(std::move(snapshot));
    // An editor that is made for the new mode attaches a buffer of its own.
    dropTextBuffer();
    changeMode(mode);
    savedToken_ = saved == Saved::yes ? std::optional(stateToken_.next()) : std::nullopt;
    stateToken_.advance();
    advanceRevision();
    if (recorder_)
        recorder_->didApply();
    Q_EMIT didApply();
}

JSONContent JSONDocument::snapshot() {
    commitTextBuffer();
    return content_;
}

SharedText JSONDocument::fileContents(const JSONContent& snapshot) {
    if (snapshot.text)
        return snapshot.text->contiguous();
    if (snapshot.tree)
        return JSONSerializer::serialize(*snapshot.tree, std::nullopt, snapshot.style);
    return {};
}

void JSONDocument::changeMode(EditorMode mode) {
    if (mode_ == mode)
        return;
    mode_ = mode;
    Q_EMIT modeChanged();
}

void JSONDocument::advanceRevision() {
    revision_ = nextRevision(revision_);
    Q_EMIT revisionChanged();
}

} // namespace quelm
