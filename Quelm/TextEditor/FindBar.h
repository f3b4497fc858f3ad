#pragma once

#include "Quelm/TextEditor/TextReplacing.h"
#include "Quelm/TextEditor/TextSearch.h"

#include <QPointer>
#include <QString>
#include <QWidget>

class QAction;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;

namespace quelm {

class SymbolButton;
class TextView;

/// The bar above a text view that searches in its text and replaces what it finds, hidden until it is asked for. While
/// it is open, matches are marked and counted, and typing in its field goes to the first one from where the selection
/// was. Return and Shift+Return go on and back, Escape closes.
///
/// The bar takes care of its keys (Ctrl+F, Ctrl+H, F3 and Shift+F3) while it or the view has the focus, unless actions
/// with these shortcuts, connected to the functions below, come first. For the main thread.
class FindBar : public QWidget {
    Q_OBJECT

public:
    /// The view is held weakly.
    explicit FindBar(TextView& view, QWidget* parent = nullptr);
    ~FindBar() override;

    /// Shows the bar with the focus in the search field. A selection within one line becomes what is searched for.
    void openFind();
    /// The same with the row for replacing.
    void openReplace();
    /// Hides the bar, ends what it has under way, and gives the focus to the view.
    void closeBar();

    /// Go on with the last query also while the bar is closed; without one they open it.
    void findNext();
    void findPrevious();

    TextSearch& search() const { return *search_; }

    /// The longest selection, in UTF-16 units, that is taken as what is searched for.
    static constexpr qint64 longestQuery = 1000;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeSearchRow();
    void makeReplaceRow();
    void layOut();
    void connectParts();

    void takeSelectionAsQuery();
    SearchQuery query() const;
    void updateQuery();
    bool isReplaceRowVisible() const;
    void setReplaceRowVisible(bool visible);
    void toggleReplaceRow();
    void replaceSelectedMatch();
    void replaceAll();
    bool handleKey(const QKeyEvent& event);
    bool handleFieldKey(const QObject* field, const QKeyEvent& event);

    void updateState();
    void updateCount();
    void showNothingFound();
    void updateColors();
    QString countText() const;

    QPointer<TextView> view_;
    TextSearch* search_;
    TextReplacing* replacing_;

    QLineEdit* searchField_ = nullptr;
    QAction* searchSymbol_ = nullptr;
    QLabel* countLabel_ = nullptr;
    SymbolButton* previousButton_ = nullptr;
    SymbolButton* nextButton_ = nullptr;
    SymbolButton* caseButton_ = nullptr;
    SymbolButton* wrapButton_ = nullptr;
    SymbolButton* replaceToggle_ = nullptr;
    SymbolButton* closeButton_ = nullptr;

    QLineEdit* replaceField_ = nullptr;
    QAction* replaceSymbol_ = nullptr;
    QWidget* replaceControls_ = nullptr;
    QPushButton* replaceButton_ = nullptr;
    QPushButton* replaceAllButton_ = nullptr;
    QLabel* statusLabel_ = nullptr;
};

} // namespace quelm
