#pragma once

#include "Quelm/TreeEditor/TreeEditor.h"

#include <QObject>
#include <QStringList>

#include <gtest/gtest.h>

namespace quelm {

/// Writes down what a tree editor and its document announce, and checks with each announcement of the editor that
/// its rows and its field are those of the tree.
class TreeEditorLog {
public:
    explicit TreeEditorLog(TreeEditor& editor) : editor_(editor) {
        log(&TreeEditor::outlineChanged, "outline");
        log(&TreeEditor::selectionChanged, "selection");
        log(&TreeEditor::editingChanged, "editing");
        log(&TreeEditor::willEdit, "will edit");
        log(&TreeEditor::didEdit, "did edit");
        QObject::connect(&editor.document(), &JSONDocument::contentChanged, &context_, [this] { note("content"); });
    }

    /// What was announced since the last call, in order.
    QString take() {
        const QString taken = entries_.join(QStringLiteral(", "));
        entries_.clear();
        return taken;
    }

private:
    template <class Signal>
    void log(Signal signal, const char* name) {
        QObject::connect(&editor_, signal, &context_, [this, name] {
            note(name);
            check();
        });
    }
    void note(const char* name) { entries_.append(QString::fromUtf8(name)); }
    void check() const {
        const JSONTree* tree = editor_.tree();
        ASSERT_NE(tree, nullptr);
        editor_.outline().checkInvariants(*tree);
        if (editor_.editing()) {
            EXPECT_TRUE(editor_.isLinked(editor_.editing()->id));
        }
    }

    TreeEditor& editor_;
    QStringList entries_;
    QObject context_;
};

} // namespace quelm
