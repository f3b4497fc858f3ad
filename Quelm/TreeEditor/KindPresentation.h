#pragma once

#include "JSONCore/NodeKind.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QString>

namespace quelm {

/// How a kind of value is shown to the user, wherever it is.

ColorRole kindColor(NodeKind kind);

/// "{ }", "[ ]", "abc", "123", "0|1" or "∅".
QString kindBadge(NodeKind kind);

/// "Objeto", "Arreglo", "Texto", "Número", "Booleano" or "Nulo".
QString kindName(NodeKind kind);

} // namespace quelm
