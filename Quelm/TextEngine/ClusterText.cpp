#include "Quelm/TextEngine/ClusterText.h"

#include "Quelm/TextEngine/TextClusters.h"

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

/// Where a tab that begins at `x` ends.
double tabEnd(double x, double tabWidth) {
    // So that the sum of widths that a stop was reached by may be a little off.
    constexpr double hair = 0.05;
    return (std::floor((x + hair) / tabWidth) + 1) * tabWidth;
}

} // namespace

ClusterText::ClusterText(QString string, std::shared_ptr<ClusterShapes> shapes)
    : string_(std::move(string)), shapes_(std::move(shapes)) {
    const TextFont& font = shapes_->font();
    shapes_->prepare(string_);
    clusters_.reserve(static_cast<std::size_t>(string_.size()) + 1);
    double x = 0;
    clusters::forEach(string_, [&](qsizetype start, qsizetype end) {
        const char16_t unit = string_.at(start).unicode();
        Cluster& cluster = clusters_.emplace_back(static_cast<int>(start), nullptr, x);
        if (end - start == 1 && TextFont::isPrintableASCII(unit)) {
            x += font.advance();
        } else if (unit == u'\t') {
            x = tabEnd(x, font.tabWidth());
        } else {
            cluster.shape = &shapes_->shape(QStringView(string_).sliced(start, end - start));
            x += cluster.shape->width;
        }
    });
    clusters_.push_back({length(), nullptr, x});
}

std::size_t ClusterText::clusterOf(qint64 index) const {
    const auto next = std::ranges::upper_bound(clusters_, index, {}, &Cluster::start);
    return static_cast<std::size_t>(next - clusters_.begin() - 1);
}

std::size_t ClusterText::clusterFrom(qint64 index) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(clusters_, index, {}, &Cluster::start) -
                                    clusters_.begin());
}

std::size_t ClusterText::clusterAt(double x) const {
    const auto next = std::ranges::upper_bound(clusters_, x, {}, &Cluster::x);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(next - clusters_.begin() - 1, 0));
}

int ClusterText::indexAt(int, double x) const {
    const std::size_t before = clusterAt(x);
    if (before + 1 == clusters_.size())
        return length();
    const Cluster& after = clusters_[before + 1];
    return after.x - x < x - clusters_[before].x ? after.start : clusters_[before].start;
}

void ClusterText::appendStretches(int, TextRange indexes, Stretches& stretches) const {
    if (!indexes.isEmpty())
        stretches.emplace_back(x(static_cast<int>(indexes.location)), clusters_[clusterFrom(indexes.end())].x);
}

void ClusterText::addGlyphs(const TextPainting& painting, TextRange indexes, ColorRole role) const {
    const std::size_t end = clusterFrom(indexes.end());
    for (std::size_t index = clusterFrom(indexes.location); index < end; ++index) {
        const Cluster& cluster = clusters_[index];
        const double x = painting.origin.x() + cluster.x;
        if (cluster.shape)
            painting.glyphs.add(role, *shapes_, *cluster.shape, x);
        else
            painting.glyphs.add(role, string_.at(cluster.start).unicode(), x, shapes_->font());
    }
}

void ClusterText::paint(const TextPainting& painting, int) const {
    // How far glyphs may reach beyond their places.
    const double slack = 1.0 * shapes_->font().rowHeight();
    const Cluster& first = clusters_[clusterAt(painting.left - slack)];
    const std::size_t end = std::min(clusterAt(painting.right + slack) + 1, clusters_.size() - 1);
    const TextRange visible = TextRange::between(first.start, std::max(first.start, clusters_[end].start));
    painting.colorsOf(visible,
                      [&](qint64 from, qint64 length, ColorRole role) { addGlyphs(painting, {from, length}, role); });
    painting.glyphs.draw(painting.painter, painting.origin.y(), shapes_->font(), painting.color);
}

} // namespace quelm
