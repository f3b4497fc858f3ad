#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/SettingsView.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

// Everything that a user can read in a window, in all of its states.

namespace quelm {
namespace {

class WindowTextsTests : public testing::Test {
protected:
    ~WindowTextsTests() override {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (qobject_cast<QMessageBox*>(widget))
                widget->close();
    }

    void open(const char* text) {
        controller.newDocument();
        window = controller.windows().back();
        window->document().apply(JSONContent::fromText(TextRope(SharedText(std::string_view(text)))));
    }

    void add(const QString& text) {
        if (!text.isEmpty())
            texts_.insert(QString(text).remove(u'&').section(u'\t', 0, 0));
    }
    void add(const QAction& action) {
        if (action.isSeparator() || !action.isVisible())
            return;
        add(action.text());
        add(action.toolTip());
        add(action.statusTip());
        if (QMenu* menu = action.menu())
            addMenu(*menu);
    }
    /// A menu as it is when it is opened.
    void addMenu(QMenu& menu) {
        menu.popup(QPoint(0, 0));
        for (const QAction* action : menu.actions())
            add(*action);
        menu.close();
    }
    /// A widget with all that is in it.
    void addWidget(const QWidget& widget) {
        add(widget.windowTitle());
        add(widget.toolTip());
        add(widget.accessibleName());
        if (const auto* label = qobject_cast<const QLabel*>(&widget))
            add(label->text());
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
            add(button->text());
        if (const auto* field = qobject_cast<const QLineEdit*>(&widget))
            add(field->placeholderText());
        if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
            add(group->title());
        if (const auto* picker = qobject_cast<const QComboBox*>(&widget))
            for (int index = 0; index < picker->count(); ++index)
                add(picker->itemText(index));
        for (const QAction* action : widget.actions())
            add(*action);
        for (const QObject* child : widget.children())
            if (const auto* part = qobject_cast<const QWidget*>(child); part && !qobject_cast<const QMenu*>(part))
                addWidget(*part);
    }
    void addKeyList() {
        for (const QTreeWidget* list : window->findChildren<QTreeWidget*>())
            for (int section = 0; section < list->topLevelItemCount(); ++section) {
                add(list->topLevelItem(section)->text(0));
                for (int row = 0; row < list->topLevelItem(section)->childCount(); ++row)
                    add(list->topLevelItem(section)->child(row)->text(0));
            }
    }
    /// The window with its menus and whatever dialog it shows.
    void addWindow() {
        addWidget(*window);
        addKeyList();
    }

    void chooseItem(const char* menu, const char* title) {
        const auto named = [](const char* text) {
            return [text](const QAction* action) { return action->text().remove(u'&') == QString::fromUtf8(text); };
        };
        const auto menus = window->menuBar()->actions();
        QMenu& found = *(*std::ranges::find_if(menus, named(menu)))->menu();
        found.popup(QPoint(0, 0));
        const auto items = found.actions();
        (*std::ranges::find_if(items, named(title)))->trigger();
        found.close();
    }
    /// The dialog that the window shows now, read and closed.
    void addDialog() {
        for (QDialog* dialog : window->findChildren<QDialog*>())
            if (dialog->isVisible()) {
                addWidget(*dialog);
                addKeyList();
                dialog->close();
            }
        QTest::qWait(0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void addErrorOf(const std::function<void()>& operation) {
        operation();
        ASSERT_TRUE(QTest::qWaitFor([this] { return window->model().errorMessage().has_value(); }));
        add(window->model().errorMessage()->section(u'\n', 0, 0));
        addDialog();
    }

    void addTree() {
        open(R"({"a":[1,true,null],"b":{"a":"x"},"a":[1],"c":{"d":1,"e":2},"f":[1,2],"":0})");
        TreeEditor& tree = window->treeEditor();
        tree.setAllExpanded(true);
        tree.select(tree.outline().rowID(1));
        addWindow();
        TreeView& view = *window->treeView();
        for (std::int64_t row = 0; row < tree.outline().rowCount(); ++row)
            for (const TreeRowPart part : {TreeRowPart::badge, TreeRowPart::duplicateMark})
                add(view.toolTipAt(view.partArea(row, part).center().toPoint()));
        view.showSelectionMenu();
        ASSERT_NE(view.openMenu(), nullptr);
        addMenu(*view.openMenu());
        addEditNames();
        QGuiApplication::clipboard()->setText(QStringLiteral("no"));
        addErrorOf([&] { tree.pasteJSON(); });
    }
    void addUndoName() { add(window->undoManager().undoMenuItemTitle()); }
    void addEditNames() {
        TreeEditor& tree = window->treeEditor();
        tree.select(tree.outline().rowID(2));
        tree.activate(TreeEditor::Field::value);
        tree.commit(SharedText(std::string_view("7")), {tree.outline().rowID(2), TreeEditor::Field::value});
        addUndoName();
        tree.changeType(tree.outline().rowID(2), NodeKind::null);
        addUndoName();
        tree.duplicate();
        addUndoName();
        tree.move(-1);
        addUndoName();
        tree.remove();
        addUndoName();
        tree.select(tree.outline().rowID(1));
        tree.activate(TreeEditor::Field::key);
        tree.commit(SharedText(std::string_view("z")), {tree.outline().rowID(1), TreeEditor::Field::key});
        addUndoName();
        tree.insert(false);
        tree.setEditing(std::nullopt);
        addUndoName();
        QGuiApplication::clipboard()->setText(QStringLiteral("1"));
        tree.pasteJSON();
        addUndoName();
    }
    void addText() {
        Preferences::setInitialMode(Preferences::InitialMode::text);
        open("[1,2]");
        addWindow();
        window->model().format(JSONStyle::compact());
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isBusy(); }));
        addUndoName();
        addWindow();
        for (const JSONStyle::Indent indent : JSONStyle::allIndents) {
            window->model().format(JSONStyle::pretty(indent, false));
            ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isBusy(); }));
            addWindow();
        }
        window->model().validator().adopt(TextValidator::State::idle());
        addWindow();
        chooseItem("JSON", "Ir a línea…");
        addDialog();
        window->textEditor()->findBar().openReplace();
        addWindow();
    }
    void addInvalidText() {
        open("[1");
        addWindow();
        addErrorOf([this] { window->model().switchMode(EditorMode::tree); });
        addErrorOf([this] { window->model().format(JSONStyle::compact()); });
        addErrorOf([this] { window->model().prepareExport(JSONStyle::compact()); });
    }
    void addDialogs() {
        open("[1]");
        chooseItem("Archivo", "Abrir…");
        addDialog();
        chooseItem("Archivo", "Guardar como…");
        addDialog();
        chooseItem("Archivo", "Exportar JSON bonito…");
        addDialog();
        chooseItem("Ayuda", "Atajos de teclado");
        addDialog();
        chooseItem("Ayuda", "Acerca de Quelm");
        addDialog();
        window->treeEditor().insert(true);
        window->close();
        addDialog();
        window->document().configuration().setFileLocation(folder.path(QStringLiteral("a.json")));
        controller.revert(*window);
        addDialog();
        controller.showSettings();
        addWidget(*controller.settings());
    }
    void addEverything() {
        addDialogs();
        addTree();
        addInvalidText();
        addText();
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
    QPointer<EditorView> window;
    std::set<QString> texts_;
};

TEST_F(WindowTextsTests, AllThatIsPromisedCanBeRead) {
    addEverything();
    for (const char* expected : {
             // The document.
             "Sin título",
             "Deshacer Formato",
             "No se puede exportar un JSON inválido.",
             "No se puede dar formato a un JSON inválido.",
             "No se puede mostrar como árbol porque el JSON no es válido.",
             // The tree.
             "Deshacer Editar valor",
             "Deshacer Cambiar tipo",
             "Deshacer Duplicar",
             "Deshacer Mover",
             "Deshacer Eliminar",
             "Deshacer Renombrar clave",
             "Deshacer Insertar",
             "Deshacer Pegar JSON",
             "El portapapeles no contiene JSON válido.",
             "Objeto · clic para cambiar el tipo",
             "Arreglo · clic para cambiar el tipo",
             "Clave duplicada",
             "Editar",
             "Cambiar tipo",
             "Objeto",
             "Arreglo",
             "Texto",
             "Número",
             "Booleano",
             "Nulo",
             "Copiar como JSON",
             "Copiar como JSON compacto",
             "Eliminar",
             // The menus.
             "Exportar JSON bonito…",
             "Exportar JSON compacto…",
             "JSON",
             "Árbol",
             "Embellecer",
             "Compactar",
             "Insertar debajo",
             "Insertar hijo",
             "Duplicar",
             "Mover arriba",
             "Mover abajo",
             "Expandir todo",
             "Colapsar todo",
             "Copiar ruta",
             "Pegar JSON",
             "Ir a línea…",
             "Ir al error",
             // The window.
             "Modo",
             "Todo en una línea, sin espacios",
             "Exportar",
             "JSON bonito…",
             "Formato legible con sangría",
             "JSON compacto…",
             "No se pudo completar",
             "Número de línea",
             "Cancelar",
             "Aceptar",
             "Sin validar",
             "3 nodos",
             "Formato: compacto",
             "Formato: tabulador",
             "Formato: 4 espacios",
             "Formato: 2 espacios",
             // The preferences.
             "Embellecer y exportar",
             "Sangría",
             "2 espacios",
             "4 espacios",
             "Tabulador",
             "Ordenar claves alfabéticamente",
             "Al abrir un archivo",
             "Mostrar en",
             "Árbol si es válido, si no Texto",
             "Texto (formato original)",
         })
        EXPECT_TRUE(texts_.contains(QString::fromUtf8(expected))) << expected;
}

TEST_F(WindowTextsTests, AllOfItIsSpanish) {
    addEverything();
    EXPECT_GT(texts_.size(), 100u);
    // Words of the toolkit's own dialogs and of desktops at large.
    const QRegularExpression english(
        QStringLiteral("\\b(open|save|cancel|close|ok|yes|file|files|folder|name|size|date|modified|look in|back|"
                       "forward|parent|directory|create|new|detail|view|list|type|computer|show|hidden|rename|delete|"
                       "undo|redo|cut|copy|paste|select|all|help|apply|reset|discard|find|replace|next|previous|"
                       "settings|window|about|untitled|line|node|nodes|tree|text|export|the|and|of|with)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    // Paths are not the application's.
    std::erase_if(texts_, [](const QString& text) { return text.contains(u'/'); });
    for (const QString& text : texts_)
        EXPECT_FALSE(english.match(text).hasMatch()) << text.toStdString();
}

TEST_F(WindowTextsTests, WhatAsksForMoreSaysSoWithOneCharacter) {
    addEverything();
    for (const QString& text : texts_)
        EXPECT_FALSE(text.contains(QStringLiteral("..."))) << text.toStdString();
}

} // namespace
} // namespace quelm
