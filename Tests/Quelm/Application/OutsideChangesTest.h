#pragma once

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace quelm {

/// A window whose file the test changes behind its back, as other programs do.
class OutsideChangesTest : public testing::Test {
protected:
    OutsideChangesTest() { EXPECT_TRUE(QDir().mkdir(folder.path(QStringLiteral("carpeta")))); }

    void open(std::string_view bytes) {
        path = folder.write(QStringLiteral("carpeta/datos.json"), bytes);
        openPath(path);
    }
    void openPath(const QString& name) {
        const auto count = controller.windows().size();
        controller.open(name);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return controller.windows().size() == count + 1 && !controller.windows().back()->isOpening() &&
                   controller.windows().back()->isVisible();
        }));
        window = controller.windows().back();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    // What other programs do.
    void replace(std::string_view bytes) const {
        const QString fresh = folder.write(QStringLiteral("carpeta/.nuevo"), bytes);
        ASSERT_EQ(std::rename(fresh.toLocal8Bit(), path.toLocal8Bit()), 0);
    }
    void writeInPlace(std::string_view bytes) const { std::ofstream(path.toStdString()) << bytes; }
    void append(std::string_view bytes) const { std::ofstream(path.toStdString(), std::ios::app) << bytes; }

    // What the window has.
    JSONDocument& document() const { return window->document(); }
    TreeEditor& tree() const { return window->treeEditor(); }
    TextView& textView() const { return window->textEditor()->textView(); }
    /// The bytes that it would write.
    std::string content() const { return std::string(JSONDocument::fileContents(document().snapshot()).view()); }
    bool waitForContent(std::string_view expected) const {
        return QTest::qWaitFor([&] { return content() == expected && document().isModified() == false; });
    }
    bool isEdited() const { return document().isModified(); }
    /// An edit of the tree: the first member of the object, or element, gets that value.
    void editTree(const char* value) {
        const NodeID first = tree().tree()->children(tree().tree()->root()).front();
        tree().select(first);
        tree().activate(TreeEditor::Field::value);
        ASSERT_TRUE(tree().editing().has_value());
        tree().commit(SharedText(value), *tree().editing());
        ASSERT_TRUE(isEdited());
    }

    // What it asks and tells.
    QMessageBox* box() const {
        const auto boxes = window ? window->findChildren<QMessageBox*>() : QList<QMessageBox*>();
        const auto shown = std::ranges::find_if(boxes, &QWidget::isVisible);
        return shown == boxes.end() ? nullptr : *shown;
    }
    QString text() const { return box() ? box()->text() : QString(); }
    bool waitForBox(const char* expected) const {
        return QTest::qWaitFor([&] { return text() == QString::fromUtf8(expected); });
    }
    bool waitForNoBox() const {
        return QTest::qWaitFor([this] { return !box(); });
    }
    void answer(const char* title) const {
        ASSERT_NE(box(), nullptr);
        const auto buttons = box()->buttons();
        const auto button = std::ranges::find_if(buttons, [&](const QAbstractButton* candidate) {
            return QString(candidate->text()).remove(u'&') == QString::fromUtf8(title);
        });
        ASSERT_NE(button, buttons.end()) << title;
        QTest::mouseClick(*button, Qt::LeftButton);
    }
    static constexpr auto changedText = "\"datos.json\" ha cambiado en el disco.";
    static constexpr auto goneText = "\"datos.json\" ya no está en su carpeta.";

    /// Whatever follows from the last change has followed: that of another file, which came later, has been shown.
    void settle() {
        const QPointer<EditorView> before = window;
        const QString own = path;
        openPath(folder.write(QStringLiteral("carpeta/testigo.json"), "[]"));
        path = folder.path(QStringLiteral("carpeta/testigo.json"));
        replace("[1]");
        ASSERT_TRUE(waitForContent("[1]"));
        window->close();
        path = own;
        window = before;
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QString path;
    DocumentController controller{[this](EditorView& made) { addWindowMenus(made, controller); }};
    QPointer<EditorView> window;
};

} // namespace quelm
