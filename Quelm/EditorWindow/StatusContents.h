#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

namespace quelm {

class EditorModel;

/// What a status bar says of a document: a plain value, its texts fit to be painted in one line.
struct StatusContents {
    enum class State : std::uint8_t { valid, invalid, unknown };

    State state = State::unknown;
    /// The error, or that nothing is known; empty for what is valid.
    QString stateText;
    /// Empty while no number is known.
    QString nodeCount;
    QString format;
    /// Of the selected node; empty without one, or in text mode. A very long one without its beginning.
    QString path;

    /// Costs what the path does (`pathTail`).
    static StatusContents of(EditorModel& model);

    friend bool operator==(const StatusContents&, const StatusContents&) = default;
};

} // namespace quelm
