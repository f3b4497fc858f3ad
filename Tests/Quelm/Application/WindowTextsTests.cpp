#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/SettingsView.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/EditorWindow/StatusBar.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QAccessible>
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
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <utility>
#include <vector>

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

    static QString shown(const QString& text) { return QString(text).remove(u'&').section(u'\t', 0, 0); }
    void add(const QString& text) {
        if (text.isEmpty())
            return;
        texts_.insert(shown(text));
        textsOfPlaces_[place_].insert(shown(text));
    }
    /// What is added by it counts for that place.
    void in(const QString& place, const std::function<void()>& adding) {
        const QString outer = std::exchange(place_, place);
        adding();
        place_ = outer;
    }
    /// A part of a window that is a place of its own; else where the window is.
    QString placeOf(const QWidget& widget) const {
        if (qobject_cast<const QToolBar*>(&widget))
            return QStringLiteral("toolbar");
        if (qobject_cast<const StatusBar*>(&widget))
            return QStringLiteral("status bar");
        if (qobject_cast<const FindBar*>(&widget))
            return QStringLiteral("find bar");
        if (qobject_cast<const QDialog*>(&widget))
            return QStringLiteral("dialogs");
        if (qobject_cast<const SettingsView*>(&widget))
            return QStringLiteral("preferences");
        return place_;
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
        in(placeOf(widget), [&] { addPartsOf(widget); });
    }
    void addPartsOf(const QWidget& widget) {
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
        const bool isMenuBar = qobject_cast<const QMenuBar*>(&widget);
        for (const QAction* action : widget.actions())
            in(isMenuBar ? shown(action->text()) : place_, [&] { add(*action); });
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
        in(QStringLiteral("rows"), [&] { addRowNames(view); });
        view.showSelectionMenu();
        ASSERT_NE(view.openMenu(), nullptr);
        in(QStringLiteral("node menu"), [&] { addMenu(*view.openMenu()); });
        addEditNames();
        QGuiApplication::clipboard()->setText(QStringLiteral("no"));
        addErrorOf([&] { tree.pasteJSON(); });
    }
    /// What assistive technology says of the rows: their labels, kinds and values.
    void addRowNames(TreeView& view) {
        QAccessibleInterface& rows = *QAccessible::queryAccessibleInterface(&view);
        for (int row = 0; row < rows.childCount(); ++row)
            for (const QString& part : rows.child(row)->text(QAccessible::Name).split(QStringLiteral(", ")))
                add(part);
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
    /// The alert about a file that cannot be opened.
    void addOpeningError() {
        controller.open(folder.write(QStringLiteral("latin.json"), "\"a\xf1o\""));
        const auto alert = [] {
            const QWidgetList widgets = QApplication::topLevelWidgets();
            const auto found = std::ranges::find_if(widgets, [](QWidget* widget) {
                return qobject_cast<QMessageBox*>(widget) && widget->isVisible() && !widget->parentWidget();
            });
            return found == widgets.end() ? nullptr : *found;
        };
        ASSERT_TRUE(QTest::qWaitFor([&] { return alert() != nullptr; }));
        addWidget(*alert());
        alert()->close();
    }
    void addEverything() {
        addOpeningError();
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
    std::map<QString, std::set<QString>> textsOfPlaces_;
    QString place_ = QStringLiteral("window");
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

TEST_F(WindowTextsTests, EveryPlaceHasItsTexts) {
    addEverything();
    const std::map<const char*, std::vector<const char*>> expected{
        {"Archivo",
         {"Nuevo", "Abrir…", "Cerrar", "Guardar", "Guardar como…", "Exportar JSON bonito…", "Exportar JSON compacto…",
          "Salir"}},
        {"Edición", {"Deshacer", "Rehacer", "Cortar", "Copiar", "Pegar", "Seleccionar todo", "Preferencias…"}},
        {"JSON",
         {"Árbol", "Texto", "Embellecer", "Compactar", "Insertar debajo", "Insertar hijo", "Duplicar", "Mover arriba",
          "Mover abajo", "Expandir todo", "Colapsar todo", "Copiar ruta", "Pegar JSON", "Ir a línea…", "Ir al error"}},
        {"node menu",
         {"Editar", "Cambiar tipo", "Objeto", "Arreglo", "Texto", "Número", "Booleano", "Nulo", "Duplicar",
          "Copiar como JSON", "Copiar como JSON compacto", "Eliminar"}},
        {"toolbar",
         {"Modo", "Árbol", "Texto", "Embellecer", "Compactar", "Exportar", "JSON bonito…", "JSON compacto…",
          "Todo en una línea, sin espacios", "Formato legible con sangría"}},
        {"status bar",
         {"Sin validar", "3 nodos", "Formato: compacto", "Formato: tabulador", "Formato: 4 espacios",
          "Formato: 2 espacios"}},
        {"rows", {"raíz", "clave vacía", "1 clave", "2 claves", "1 elemento", "2 elementos", "Clave duplicada"}},
        {"preferences",
         {"Embellecer y exportar", "Sangría", "2 espacios", "4 espacios", "Tabulador", "Ordenar claves alfabéticamente",
          "Al abrir un archivo", "Mostrar en", "Árbol si es válido, si no Texto", "Texto (formato original)"}},
        {"dialogs",
         {"No se pudo completar", "Número de línea", "Cancelar", "Aceptar", "No se pudo abrir «latin.json».",
          "Línea 1, columna 1: El archivo no está codificado en UTF-8"}},
    };
    for (const auto& [place, texts] : expected)
        for (const char* text : texts)
            EXPECT_TRUE(textsOfPlaces_[QString::fromUtf8(place)].contains(QString::fromUtf8(text)))
                << text << " in " << place;
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
