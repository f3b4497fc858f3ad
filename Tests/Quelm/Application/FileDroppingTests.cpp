#include "Quelm/Application/FileDropping.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/EditorWindow/StatusBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>
#include <QToolBar>
#include <QUrl>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class FileDroppingTests : public EditorViewTest {
protected:
    void makeWindow() {
        showAsText("[1]");
        new FileDropping(*window, [this](const QStringList& paths) { opened.push_back(paths); });
    }
    static QMimeData* files(const QStringList& addresses, QMimeData& data) {
        QList<QUrl> urls;
        for (const QString& address : addresses)
            urls += QUrl(address);
        data.setUrls(urls);
        data.setText(addresses.join(u'\n'));
        return &data;
    }
    /// Drags the data into the widget and lets it go there, as the application passes that on. Whether it was taken.
    static bool drop(QWidget& widget, const QMimeData& data,
                     Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
        QDragEnterEvent enter(QPoint(2, 2), actions, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QApplication::sendEvent(&widget, &enter);
        QDropEvent event(QPointF(2, 2), actions, &data, Qt::LeftButton, Qt::NoModifier);
        event.setAccepted(false);
        QApplication::sendEvent(&widget, &event);
        EXPECT_EQ(enter.isAccepted(), event.isAccepted());
        if (event.isAccepted()) {
            EXPECT_EQ(event.dropAction(), Qt::CopyAction) << "the file must stay where it is";
        }
        return event.isAccepted();
    }

    std::vector<QStringList> opened;
};

TEST_F(FileDroppingTests, FilesDroppedAnywhereInTheWindowAreOpenedInTheirOrder) {
    makeWindow();
    const QStringList expected{QStringLiteral("/tmp/b.json"), QStringLiteral("/tmp/a ñ.json")};
    std::size_t count = 0;
    // The application takes what a part has no use for to the widget around it, and so on.
    for (QWidget* widget : {static_cast<QWidget*>(window.get()), static_cast<QWidget*>(&window->toolBar()),
                            static_cast<QWidget*>(&window->documentStatusBar()), textView().viewport()}) {
        QMimeData data;
        files({QStringLiteral("file:///tmp/b.json"), QStringLiteral("file:///tmp/a%20%C3%B1.json")}, data);
        EXPECT_TRUE(drop(*widget, data)) << widget->metaObject()->className();
        EXPECT_EQ(opened.size(), count) << "the other program waits for the end of the drop";
        ASSERT_TRUE(QTest::qWaitFor([&] { return opened.size() == count + 1; }));
        EXPECT_EQ(opened[count++], expected);
    }
    EXPECT_EQ(savedText(), "[1]");
}

TEST_F(FileDroppingTests, WhatIsNoLocalFileIsNotTaken) {
    makeWindow();
    QMimeData web;
    files({QStringLiteral("https://example.org/a.json")}, web);
    EXPECT_FALSE(drop(*window, web));
    QMimeData text;
    text.setText(QStringLiteral("hola"));
    EXPECT_FALSE(drop(*window, text));
    QMimeData mixed;
    files({QStringLiteral("https://example.org/a.json"), QStringLiteral("file:///tmp/a.json")}, mixed);
    EXPECT_TRUE(drop(*window, mixed));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !opened.empty(); }));
    EXPECT_EQ(opened[0], QStringList{QStringLiteral("/tmp/a.json")});
}

TEST_F(FileDroppingTests, FilesThatMayOnlyBeMovedAreNotTaken) {
    makeWindow();
    QMimeData data;
    files({QStringLiteral("file:///tmp/a.json")}, data);
    EXPECT_FALSE(drop(*window, data, Qt::MoveAction));
}

TEST_F(FileDroppingTests, TextStillGoesIntoTheText) {
    makeWindow();
    QMimeData text;
    text.setText(QStringLiteral("7"));
    EXPECT_TRUE(drop(*textView().viewport(), text, Qt::CopyAction));
    EXPECT_NE(savedText(), "[1]");
    EXPECT_TRUE(opened.empty());
}

} // namespace
} // namespace quelm
