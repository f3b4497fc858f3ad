#pragma once

#include "Quelm/Documents/EditorMode.h"

#include <QWidget>

#include <array>

namespace quelm {

/// The two editors of a document as a control of two segments, each with a symbol and a title. It shows the mode that
/// it is told; choosing the other segment asks for that mode and changes nothing by itself.
class ModePicker : public QWidget {
    Q_OBJECT

public:
    explicit ModePicker(QWidget* parent = nullptr);

    EditorMode mode() const { return mode_; }
    void setMode(EditorMode mode);

Q_SIGNALS:
    /// The user asks for another mode than the one that is shown.
    void modeChosen(quelm::EditorMode mode);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Segment;

    void choose(EditorMode mode);

    EditorMode mode_ = EditorMode::tree;
    /// In the order of the modes.
    std::array<Segment*, 2> segments_;
};

} // namespace quelm
