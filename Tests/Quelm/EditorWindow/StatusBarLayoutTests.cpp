#include "Tests/Quelm/EditorWindow/StatusBarTest.h"

#include <QHelpEvent>
#include <QToolTip>

#include <gmock/gmock.h>

namespace quelm {
namespace {

class StatusBarLayoutTests : public StatusBarTest {
protected:
    void setWidth(int width) const { bar->resize(width, bar->height()); }

    /// The widgets that have a place, from left to right.
    QList<QWidget*> parts() const {
        QList<QWidget*> parts = bar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        parts.removeIf([](const QWidget* part) { return part->isHidden() || part->width() == 0; });
        std::ranges::sort(parts, {}, &QWidget::x);
        return parts;
    }

    void expectNothingOverlaps() const {
        int end = 0;
        for (const QWidget* part : parts()) {
            EXPECT_GE(part->x(), end) << part->metaObject()->className() << " at " << bar->width();
            end = part->x() + part->width();
            EXPECT_GE(part->y(), 0);
            EXPECT_LE(part->y() + part->height(), bar->height());
        }
        EXPECT_LE(end, bar->width());
    }

    void showWork() {
        model->format(JSONStyle::compact());
        clock.advance(EditorModel::patience + std::chrono::milliseconds(1));
        refresh();
    }

    static QString tipOf(QWidget* widget) {
        const QPoint place = widget->rect().center();
        QHelpEvent event(QEvent::ToolTip, place, widget->mapToGlobal(place));
        QCoreApplication::sendEvent(widget, &event);
        const QString tip = QToolTip::text();
        QToolTip::hideText();
        return tip;
    }
};

TEST_F(StatusBarLayoutTests, NothingOverlapsAtAnyWidth) {
    open("{\"una clave bastante larga\":{\"y otra que no lo es menos\":[1,2,3]}}");
    const JSONTree& tree = *model->document().content().tree;
    select(tree.children(child(0))[0]);
    showWork();
    for (int width = bar->minimumSizeHint().width(); width < 1200; width += 7) {
        setWidth(width);
        expectNothingOverlaps();
    }

    openAsText("[1 2]");
    setState(errorState(1234567, 7654321));
    showWork();
    for (int width = bar->minimumSizeHint().width(); width < 1200; width += 7) {
        setWidth(width);
        expectNothingOverlaps();
    }
}

TEST_F(StatusBarLayoutTests, ItNeverKeepsAWindowWide) {
    open("[1]");
    EXPECT_LE(bar->minimumSizeHint().width(), 420);
    EXPECT_LE(bar->minimumWidth(), 420);
    EXPECT_EQ(bar->minimumHeight(), bar->maximumHeight());
}

TEST_F(StatusBarLayoutTests, ThePathGivesWayFirstAndAtItsHead) {
    open("{\"una clave bastante larga\":{\"y otra que no lo es menos\":[1,2,3]}}");
    const JSONTree& tree = *model->document().content().tree;
    select(tree.children(child(0))[0]);
    setWidth(1200);
    EXPECT_EQ(texts().back(), QStringLiteral("$[\"una clave bastante larga\"][\"y otra que no lo es menos\"]"));
    EXPECT_EQ(tipOf(labels().back()), QString());

    setWidth(400);
    EXPECT_EQ(texts()[0], QStringLiteral("6 nodos"));
    EXPECT_EQ(texts()[1], QStringLiteral("Formato: compacto"));
    EXPECT_TRUE(texts().back().startsWith(u'…')) << texts().back().toStdString();
    EXPECT_TRUE(texts().back().endsWith(QStringLiteral("menos\"]")));
    EXPECT_THAT(tipOf(labels().back()).toStdString(), testing::HasSubstr("una clave bastante larga"));

    setWidth(230);
    EXPECT_EQ(texts(), QStringList({QStringLiteral("6 nodos"), QStringLiteral("Formato: compacto")}));
}

TEST_F(StatusBarLayoutTests, AnErrorIsCutAtItsEndAndItsButtonStays) {
    openAsText("[1 2]");
    setState(errorState(1234567, 7654321));
    setWidth(420);
    const QString shown = texts().front();
    EXPECT_TRUE(shown.startsWith(QStringLiteral("Línea 1234567"))) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith(u'…'));
    EXPECT_EQ(texts().back(), QStringLiteral("Formato: compacto"));
    EXPECT_THAT(tipOf(labels().front()).toStdString(), testing::HasSubstr("columna 7654321: Valor inesperado"));
    QPushButton* goToError = button(QStringLiteral("Ir al error"));
    EXPECT_EQ(goToError->width(), goToError->sizeHint().width());

    setWidth(260);
    EXPECT_EQ(goToError->width(), goToError->sizeHint().width());
    EXPECT_EQ(labels().size(), 1);
    EXPECT_TRUE(texts().front().startsWith(QStringLiteral("Línea")));
}

TEST_F(StatusBarLayoutTests, WorkIsAtTheRightEnd) {
    open("[1,2,3]");
    showWork();
    EXPECT_EQ(parts().back(), button(QStringLiteral("Cancelar")));
    const int distance = bar->width() - parts().back()->geometry().right();
    setWidth(1000);
    EXPECT_EQ(bar->width() - parts().back()->geometry().right(), distance);
}

TEST_F(StatusBarLayoutTests, TheTooltipOfAPathIsItsEnd) {
    open("{\"" + std::string(5000, 'a') + " \":{\"hijo\":1}}");
    select(model->document().content().tree->children(child(0))[0]);
    EXPECT_THAT(tipOf(labels().back()).toStdString(), testing::HasSubstr("&quot;].hijo"));
}

} // namespace
} // namespace quelm
