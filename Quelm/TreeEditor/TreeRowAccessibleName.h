#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/NodeID.h"

#include <QString>

#include <cstdint>

namespace quelm {

/// What a row is called where it is heard instead of seen: its label, what it is, and its value or the number of its
/// children, as in "nombre, Texto, "Ana"", "0, Número, 12" and "raíz, Objeto, 3 claves". Of a long key or value the
/// beginning. The node must be linked.
QString treeRowName(NodeID id, const JSONTree& tree);

/// How deep a row is, as in "nivel 1" for the top-level value, whose depth is 0.
QString treeRowLevel(std::int64_t depth);

} // namespace quelm
