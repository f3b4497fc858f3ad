#include "Quelm/TreeEditor/TreeRowContents.h"

#include "Quelm/Foundation/VisibleText.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"

#include <QCoreApplication>
#include <QLocale>

namespace quelm {

namespace {

/// More than fit into any window; a row's value comes cut to 200 characters already. As many never take the bytes of
/// a key's preview, so that a key that comes cut is cut again here, which tells.
constexpr std::int64_t mostCharacters = 500;

/// The time that it takes to place the marks on one letter grows with the square of their number.
constexpr qsizetype mostMarksInARow = 128;

bool isMark(QChar character) {
    return character.isMark() || character.category() == QChar::Other_Format;
}

/// The beginning of a text that is fit to be measured and painted, cut within a letter that bears absurdly many marks.
VisibleText paintableText(std::string_view utf8) {
    VisibleText visible = visibleText(utf8, mostCharacters);
    qsizetype marks = 0;
    for (qsizetype at = 0; at < visible.text.size(); ++at) {
        marks = isMark(visible.text[at]) ? marks + 1 : 0;
        if (marks > mostMarksInARow)
            return {visible.text.left(at) + u'…', true};
    }
    return visible;
}

struct TreeRowText {
    Q_DECLARE_TR_FUNCTIONS(quelm::TreeRowView)
};

} // namespace

TreeRowContents::TreeRowContents(const TreeRow& row, const TreeRowStyle& style)
    : id(row.id), depth(row.depth), kind(row.kind), isExpanded(row.isExpanded), isDuplicateKey(row.isDuplicateKey) {
    if (const std::string* key = row.label.asKey()) {
        labelKind = key->empty() ? LabelKind::emptyKey : LabelKind::key;
        const VisibleText text = paintableText(*key);
        label = key->empty() ? TreeRowText::tr("clave vacía") : text.text;
        isLabelCut = text.isCut;
    } else if (const std::int64_t* index = row.label.asIndex()) {
        labelKind = LabelKind::index;
        label = QLocale().toString(static_cast<qlonglong>(*index));
    } else {
        labelKind = LabelKind::root;
        label = TreeRowText::tr("raíz");
    }
    labelWidth = labelFace(style).metrics.horizontalAdvance(label);

    if (isContainer(kind)) {
        value = childCountText(kind, row.childCount);
        valueWidth = style.count.metrics.horizontalAdvance(value);
        return;
    }
    const VisibleText text = paintableText(row.value);
    value = text.text;
    isValueCut = text.isCut || row.isValueShortened();
    valueWidth = style.value.metrics.horizontalAdvance(kind == NodeKind::string ? u'"' + value + u'"' : value);
}

const TreeRowStyle::Face& TreeRowContents::labelFace(const TreeRowStyle& style) const {
    if (labelKind == LabelKind::key)
        return style.key;
    return labelKind == LabelKind::index ? style.index : style.emptyKey;
}

QString childCountText(NodeKind container, std::int64_t count) {
    if (container == NodeKind::object)
        return count == 1 ? TreeRowText::tr("1 clave") : TreeRowText::tr("%1 claves").arg(count);
    return count == 1 ? TreeRowText::tr("1 elemento") : TreeRowText::tr("%1 elementos").arg(count);
}

} // namespace quelm
