#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;

namespace quelm {

/// The window of the user's preferences. Each control shows what is stored when the window is shown, and stores what is
/// chosen at once. It opens in the middle of the window that is active, and stays where the user puts it.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QGroupBox* makeWritingSection();
    QGroupBox* makeOpeningSection();
    void alignLabels();
    void closeOn(const QKeySequence& keys);
    void centerOverActiveWindow();
    void showStoredValues();

    QComboBox* indent_;
    QCheckBox* sortsKeys_;
    QComboBox* initialMode_;
    bool wasShown_ = false;
};

} // namespace quelm
