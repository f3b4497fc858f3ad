#include "Tests/Quelm/EditorWindow/StatusBarTest.h"

#include <QAccessible>

namespace quelm {
namespace {

using State = TextValidator::State;

class StatusBarAccessibleTests : public StatusBarTest {
protected:
    /// A bar that tells its news to the test.
    void openListening(std::string_view text) {
        openAsText(text);
        bar = std::make_unique<StatusBar>(*model, nullptr,
                                          StateNotices::Receiver{[] { return true; },
                                                                 [this](QAccessibleEvent& event) {
                                                                     if (event.type() == QAccessible::Alert)
                                                                         alerts += nameOf(event.object());
                                                                 }});
    }
    static QString nameOf(QObject* object) {
        return QAccessible::queryAccessibleInterface(object)->text(QAccessible::Name);
    }
    QStringList takeAlerts() { return std::exchange(alerts, {}); }

    QStringList alerts;
};

TEST_F(StatusBarAccessibleTests, EveryPartHasAName) {
    openAsText("[1 2]");
    setState(errorState(1, 4));
    EXPECT_EQ(nameOf(bar.get()), QStringLiteral("Barra de estado"));
    QStringList names;
    for (QWidget* part : bar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (!part->isHidden())
            names += nameOf(part);
    names.sort();
    EXPECT_EQ(names,
              QStringList({QStringLiteral("Formato: compacto"), QStringLiteral("Ir al error"),
                           QStringLiteral("JSON no válido"), QStringLiteral("Línea 1, columna 4: Valor inesperado")}));
}

TEST_F(StatusBarAccessibleTests, AnErrorIsToldWhenItComesAndWhenItGoes) {
    openListening("[1]");
    setState(State::valid(2));
    EXPECT_EQ(takeAlerts(), QStringList());
    setState(errorState(1, 4));
    EXPECT_EQ(takeAlerts(), QStringList(QStringLiteral("Línea 1, columna 4: Valor inesperado")));
    setState(State::valid(3));
    EXPECT_EQ(takeAlerts(), QStringList(QStringLiteral("JSON válido")));
}

TEST_F(StatusBarAccessibleTests, AnotherErrorAndWhatIsNotKnownAreNotTold) {
    openListening("[1]");
    setState(errorState(1, 4));
    takeAlerts();
    setState(errorState(1, 5));
    setState(State::idle());
    setState(errorState(1, 6));
    EXPECT_EQ(takeAlerts(), QStringList());
    setState(State::idle());
    setState(State::valid(3));
    EXPECT_EQ(takeAlerts(), QStringList(QStringLiteral("JSON válido")));
}

} // namespace
} // namespace quelm
