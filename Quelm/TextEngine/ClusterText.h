#pragma once

#include "Quelm/TextEngine/ClusterShapes.h"
#include "Quelm/TextEngine/LineText.h"

#include <QString>

#include <vector>

namespace quelm {

/// A text in one row whose clusters all stand alone, so that it is never shaped as a whole: the looks of its clusters
/// are shared with other texts, and its places are sums of their widths. Making it costs some ten nanoseconds a unit
/// when its clusters are known.
class ClusterText final : public LineText {
public:
    /// `string` is one that `clusters::standAlone`.
    ClusterText(QString string, std::shared_ptr<ClusterShapes> shapes);

    int length() const override { return static_cast<int>(string_.size()); }
    int rowCount() const override { return 1; }
    int rowOf(int) const override { return 0; }
    TextRange rowRange(int) const override { return {0, length()}; }
    double x(int index) const override { return clusters_[clusterOf(index)].x; }
    int indexAt(int row, double x) const override;
    double width(int) const override { return clusters_.back().x; }
    void appendStretches(int row, TextRange indexes, Stretches& stretches) const override;
    void paint(const TextPainting& painting, int row) const override;
    void forgetColors() const override {}

private:
    struct Cluster {
        int start = 0;
        /// Null for printable ASCII, whose looks need no shaping, and for tabs, which have none.
        const ClusterShapes::Shape* shape = nullptr;
        double x = 0;
    };

    std::size_t clusterOf(qint64 index) const;
    /// The first cluster that begins at `index` or after it.
    std::size_t clusterFrom(qint64 index) const;
    /// The last cluster that begins at `x` or before it, or the first.
    std::size_t clusterAt(double x) const;
    void addGlyphs(const TextPainting& painting, TextRange indexes, ColorRole role) const;

    const QString string_;
    const std::shared_ptr<ClusterShapes> shapes_;
    /// In order; the last one is the end of the text.
    std::vector<Cluster> clusters_;
};

} // namespace quelm
