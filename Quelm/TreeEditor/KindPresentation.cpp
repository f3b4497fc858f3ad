#include "Quelm/TreeEditor/KindPresentation.h"

#include <QCoreApplication>

#include <array>

namespace quelm {

namespace {

struct Presentation {
    ColorRole color;
    const char* badge;
    const char* name;
};

constexpr std::array<Presentation, allNodeKinds.size()> presentations{{
    {ColorRole::purple, "{ }", QT_TRANSLATE_NOOP("quelm::NodeKind", "Objeto")},
    {ColorRole::indigo, "[ ]", QT_TRANSLATE_NOOP("quelm::NodeKind", "Arreglo")},
    {ColorRole::green, "abc", QT_TRANSLATE_NOOP("quelm::NodeKind", "Texto")},
    {ColorRole::blue, "123", QT_TRANSLATE_NOOP("quelm::NodeKind", "Número")},
    {ColorRole::orange, "0|1", QT_TRANSLATE_NOOP("quelm::NodeKind", "Booleano")},
    {ColorRole::gray, "∅", QT_TRANSLATE_NOOP("quelm::NodeKind", "Nulo")},
}};

const Presentation& presentation(NodeKind kind) {
    return presentations[static_cast<std::size_t>(kind)];
}

} // namespace

ColorRole kindColor(NodeKind kind) {
    return presentation(kind).color;
}

QString kindBadge(NodeKind kind) {
    return QString::fromUtf8(presentation(kind).badge);
}

QString kindName(NodeKind kind) {
    return QCoreApplication::translate("quelm::NodeKind", presentation(kind).name);
}

} // namespace quelm
