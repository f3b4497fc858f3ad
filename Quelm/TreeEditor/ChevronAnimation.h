#pragma once

#include "JSONCore/NodeID.h"

#include <QVariantAnimation>

#include <optional>

namespace quelm {

/// The short turn of the chevron whose row the user has just expanded or collapsed; all other chevrons stand still.
class ChevronAnimation : public QVariantAnimation {
    Q_OBJECT

public:
    explicit ChevronAnimation(QObject* parent = nullptr);

    /// Turns the node's chevron towards the state it has got, in `milliseconds`; 0 where animations are not wanted.
    void turn(NodeID id, bool isExpanded, int milliseconds);

    /// How far the chevron of a row is turned at this moment, in degrees.
    double degrees(NodeID id, bool isExpanded) const;

    std::optional<NodeID> node() const { return node_; }

private:
    std::optional<NodeID> node_;
};

} // namespace quelm
