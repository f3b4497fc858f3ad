#pragma once

#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/EditorWindow/ElidedLabel.h"
#include "Quelm/EditorWindow/StatusBar.h"
#include "Quelm/EditorWindow/SymbolLabel.h"
#include "Tests/Quelm/Support/FakeClock.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QStringList>

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

namespace quelm {

/// A status bar and the model that it follows, without a window.
class StatusBarTest : public testing::Test {
protected:
    void open(std::string_view text) {
        bar.reset();
        model = std::make_unique<EditorModel>(documentWithText(text), clock);
        model->tree().reload();
        bar = std::make_unique<StatusBar>(*model);
        bar->resize(800, bar->height());
        bar->show();
    }
    void openAsText(std::string_view text) {
        Preferences::setInitialMode(Preferences::InitialMode::text);
        open(text);
    }

    /// Lets the bar, and nothing else, have its turn of the event loop.
    void refresh() const { QCoreApplication::sendPostedEvents(bar.get()); }

    void setState(const TextValidator::State& state) const {
        model->validator().adopt(state);
        refresh();
    }
    static TextValidator::State errorState(std::int64_t line, std::int64_t column) {
        return TextValidator::State::invalid({"Valor inesperado", 0, line, column});
    }

    NodeID child(std::int64_t index) const {
        const JSONTree& tree = *model->document().content().tree;
        return tree.children(tree.root())[index];
    }
    void select(NodeID id) const {
        model->tree().select(id);
        refresh();
    }

    SymbolLabel& symbol() const { return *bar->findChild<SymbolLabel*>(); }

    QList<ElidedLabel*> labels() const {
        QList<ElidedLabel*> shown = bar->findChildren<ElidedLabel*>();
        shown.removeIf([](const ElidedLabel* label) { return label->isHidden() || label->width() == 0; });
        std::ranges::sort(shown, {}, &ElidedLabel::x);
        return shown;
    }
    /// What can be read, from left to right.
    QStringList texts() const {
        QStringList texts;
        for (const ElidedLabel* label : labels())
            texts += label->shownText();
        return texts;
    }
    /// Null when there is no such button to be seen.
    QPushButton* button(const QString& title) const {
        for (QPushButton* button : bar->findChildren<QPushButton*>())
            if (button->text() == title && !button->isHidden())
                return button;
        return nullptr;
    }

    TemporaryPreferences preferences;
    FakeClock clock;
    std::unique_ptr<EditorModel> model;
    std::unique_ptr<StatusBar> bar;
};

} // namespace quelm
