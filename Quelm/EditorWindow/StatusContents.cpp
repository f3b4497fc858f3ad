#include "Quelm/EditorWindow/StatusContents.h"

#include "Quelm/Documents/ParseErrorText.h"
#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/EditorWindow/PathTail.h"
#include "Quelm/Foundation/VisibleText.h"

#include <QCoreApplication>

namespace quelm {

namespace {

/// More than the widest window shows.
constexpr std::size_t longestPath = 1000;
constexpr std::int64_t longestError = 1000;

QString tr(const char* text) {
    return QCoreApplication::translate("quelm::StatusBar", text);
}

QString indentName(JSONStyle::Indent indent) {
    switch (indent) {
    case JSONStyle::Indent::tab:
        return tr("tabulador");
    case JSONStyle::Indent::fourSpaces:
        return tr("4 espacios");
    case JSONStyle::Indent::twoSpaces:
        break;
    }
    return tr("2 espacios");
}

QString formatText(const JSONStyle& style) {
    const std::optional<JSONStyle::Indent> indent = style.prettyIndent();
    return tr("Formato: ") + (indent ? indentName(*indent) : tr("compacto"));
}

QString nodeCountText(std::optional<std::int64_t> count) {
    return count ? tr("%1 nodos").arg(qlonglong{*count}) : QString();
}

void describeTree(StatusContents& contents, const JSONContent& content, const TreeEditor& editor) {
    contents.state = StatusContents::State::valid;
    if (!content.tree)
        return;
    contents.nodeCount = nodeCountText(content.tree->nodeCount());
    const std::optional<NodeID> selection = editor.selection();
    if (selection && editor.isLinked(*selection))
        contents.path = pathTail(*content.tree, *selection, longestPath);
}

void describeText(StatusContents& contents, const TextValidator::State& state) {
    contents.nodeCount = nodeCountText(state.nodeCount());
    if (const JSONParseError* error = state.error()) {
        contents.state = StatusContents::State::invalid;
        contents.stateText = visibleText(parseErrorText(*error).toStdString(), longestError).text;
    } else if (state.isValid()) {
        contents.state = StatusContents::State::valid;
    } else {
        contents.stateText = tr("Sin validar");
    }
}

} // namespace

StatusContents StatusContents::of(EditorModel& model) {
    const JSONDocument& document = model.document();
    StatusContents contents;
    contents.format = formatText(document.content().style);
    if (document.mode() == EditorMode::tree)
        describeTree(contents, document.content(), model.tree());
    else
        describeText(contents, model.validator().state());
    return contents;
}

} // namespace quelm
