#include "Quelm/EditorWindow/Alert.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QLabel>
#include <QMessageBox>

#include <gtest/gtest.h>
#include <memory>

namespace quelm {
namespace {

TEST(AlertTests, TheNamesOfFilesAreShownAsTheyAre) {
    const QString message = QStringLiteral("No se pudo guardar «<b>a</b>.json».");
    const QString details = QStringLiteral("La carpeta «/tmp/<b>b</b>» no existe.");
    const std::unique_ptr<QMessageBox> alert(showAlert(nullptr, message, details));
    const auto expectPlain = [&](const char* name, const QString& text) {
        const auto* label = alert->findChild<QLabel*>(QLatin1String(name));
        ASSERT_NE(label, nullptr) << name;
        EXPECT_EQ(label->text(), text);
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << name;
    };
    expectPlain("qt_msgbox_label", message);
    expectPlain("qt_msgbox_informativelabel", details);
}

} // namespace
} // namespace quelm
