#pragma once

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {

/// A window whose document has changes that its file does not have.
class ChangedDocumentTest : public testing::Test {
protected:
    /// A window with the text "[1" and an "x" typed before it.
    void openAndType() {
        path = folder.write(QStringLiteral("notas.json"), "[1");
        controller.open(path);
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return !controller.windows().empty() && !controller.windows().front()->isOpening() &&
                   controller.windows().front()->isVisible();
        }));
        window = controller.windows().front();
        view().setSelectedRange({0, 0});
        QTest::keyClick(&view(), Qt::Key_X);
        ASSERT_TRUE(window->document().isModified());
    }
    TextView& view() const { return window->textEditor()->textView(); }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QString path;
    DocumentController controller{[this](EditorView& made) { addWindowMenus(made, controller); }};
    QPointer<EditorView> window;
};

} // namespace quelm
