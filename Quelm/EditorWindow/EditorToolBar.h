#pragma once

#include <QToolBar>

class QMenu;

namespace quelm {

class EditorModel;
class ModePicker;

/// The toolbar of a document window: the picker of the mode, formatting and exporting. It stays where it is and acts on
/// the window's model.
class EditorToolBar : public QToolBar {
    Q_OBJECT

public:
    /// The model must outlive it.
    explicit EditorToolBar(EditorModel& model, QWidget* parent = nullptr);

    ModePicker& modePicker() const { return *modePicker_; }

    /// Whether its items can be used, as they can at first.
    void setUsable(bool isUsable);

    /// The item that the keyboard acts on; null when that is none.
    QWidget* focusedItem() const;

private:
    void addButtons();
    void addExportButton();
    void fillExportMenu(QMenu& menu);

    EditorModel& model_;
    ModePicker* modePicker_;
};

} // namespace quelm
