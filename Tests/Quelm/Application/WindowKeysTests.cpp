#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextKeyBindings.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QTest>
#include <QToolBar>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

// All keys of a window together: none may mean two things.

namespace quelm {
namespace {

using Key = QKeySequence;

class WindowKeysTests : public testing::Test {
protected:
    void open(const char* text) {
        controller.newDocument();
        window = controller.windows().back();
        window->document().apply(JSONContent::fromText(TextRope(SharedText(std::string_view(text)))));
        fill(window->menuBar()->actions());
    }
    /// Shows the menus once, since some are filled then.
    static void fill(const QList<QAction*>& actions) {
        for (const QAction* action : actions)
            if (QMenu* menu = action->menu()) {
                menu->popup(QPoint(0, 0));
                fill(menu->actions());
                menu->close();
            }
    }
    /// Every key that acts in the whole window, with the title of what it does.
    std::multimap<QString, QString> windowKeys() const {
        std::multimap<QString, QString> keys;
        for (const QAction* action : window->findChildren<QAction*>())
            if (action->shortcutContext() == Qt::WindowShortcut || action->shortcutContext() == Qt::ApplicationShortcut)
                for (const Key& key : action->shortcuts())
                    keys.emplace(key.toString(), titleOf(*action));
        for (const QShortcut* shortcut : window->findChildren<QShortcut*>())
            keys.emplace(shortcut->key().toString(), shortcut->objectName());
        return keys;
    }
    static QString titleOf(const QAction& action) {
        return action.text().remove(u'&').section(u'\t', 0, 0).remove(QStringLiteral("…"));
    }
    static QString name(QKeyCombination key) { return Key(key).toString(); }

    TemporaryPreferences preferences;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
    EditorView* window = nullptr;
};

TEST_F(WindowKeysTests, NoneIsThereTwice) {
    for (const char* text : {"[1]", "[1"}) {
        open(text);
        const auto keys = windowKeys();
        EXPECT_GT(keys.size(), 30u);
        for (auto key = keys.begin(); key != keys.end(); ++key)
            EXPECT_EQ(keys.count(key->first), 1u) << key->first.toStdString() << ' ' << key->second.toStdString();
    }
}

TEST_F(WindowKeysTests, AreTheOnesThatAreDocumented) {
    open("[1]");
    std::set<std::string> found;
    for (const auto& [key, title] : windowKeys())
        found.insert((title + u' ' + key).toStdString());
    for (const char* expected : {"Nuevo Ctrl+N",
                                 "Abrir Ctrl+O",
                                 "Cerrar Ctrl+W",
                                 "Guardar Ctrl+S",
                                 "Guardar como Ctrl+Shift+S",
                                 "Exportar JSON bonito Ctrl+Shift+E",
                                 "Exportar JSON compacto Ctrl+Alt+Shift+E",
                                 "Salir Ctrl+Q",
                                 "Deshacer Ctrl+Z",
                                 "Rehacer Ctrl+Shift+Z",
                                 "Rehacer Ctrl+Y",
                                 "Cortar Ctrl+X",
                                 "Copiar Ctrl+C",
                                 "Pegar Ctrl+V",
                                 "Seleccionar todo Ctrl+A",
                                 "Renombrar clave Shift+F2",
                                 "Buscar Ctrl+F",
                                 "Buscar siguiente F3",
                                 "Buscar anterior Shift+F3",
                                 "Reemplazar Ctrl+H",
                                 "Preferencias Ctrl+,",
                                 "Árbol Ctrl+1",
                                 "Texto Ctrl+2",
                                 "Embellecer Ctrl+Alt+B",
                                 "Compactar Ctrl+Alt+M",
                                 "Insertar debajo Ctrl+Return",
                                 "Insertar debajo Ctrl+Enter",
                                 "Insertar hijo Ctrl+Shift+Return",
                                 "Insertar hijo Ctrl+Shift+Enter",
                                 "Duplicar Ctrl+D",
                                 "Mover arriba Ctrl+Alt+Up",
                                 "Mover arriba Alt+Up",
                                 "Mover abajo Ctrl+Alt+Down",
                                 "Mover abajo Alt+Down",
                                 "Copiar ruta Ctrl+Shift+C",
                                 "Pegar JSON Ctrl+Shift+V",
                                 "Ir a línea Ctrl+L",
                                 "Minimizar Ctrl+M"})
        EXPECT_TRUE(found.contains(expected)) << expected;
}

TEST_F(WindowKeysTests, NoneTakesAStandardKeyForSomethingElse) {
    // Ctrl+D is the exception: some platforms delete with it, which the text leaves to the menu.
    const std::map<QString, std::set<Key::StandardKey>> meant{
        {QStringLiteral("Nuevo"), {Key::New}},
        {QStringLiteral("Abrir"), {Key::Open}},
        {QStringLiteral("Cerrar"), {Key::Close}},
        {QStringLiteral("Guardar"), {Key::Save}},
        {QStringLiteral("Guardar como"), {Key::SaveAs}},
        {QStringLiteral("Salir"), {Key::Quit}},
        {QStringLiteral("Deshacer"), {Key::Undo}},
        {QStringLiteral("Rehacer"), {Key::Redo}},
        {QStringLiteral("Cortar"), {Key::Cut}},
        {QStringLiteral("Copiar"), {Key::Copy}},
        {QStringLiteral("Pegar"), {Key::Paste}},
        {QStringLiteral("Seleccionar todo"), {Key::SelectAll}},
        {QStringLiteral("Buscar"), {Key::Find}},
        {QStringLiteral("Buscar siguiente"), {Key::FindNext}},
        {QStringLiteral("Buscar anterior"), {Key::FindPrevious}},
        {QStringLiteral("Reemplazar"), {Key::Replace}},
        {QStringLiteral("Preferencias"), {Key::Preferences}},
        {QStringLiteral("Duplicar"), {Key::Delete}},
    };
    open("[1]");
    for (const auto& [key, title] : windowKeys())
        for (int standard = Key::UnknownKey + 1; standard <= Key::Cancel; ++standard) {
            const auto standardKey = static_cast<Key::StandardKey>(standard);
            if (!Key::keyBindings(standardKey).contains(Key(key)))
                continue;
            const auto found = meant.find(title);
            EXPECT_TRUE(found != meant.end() && found->second.contains(standardKey))
                << title.toStdString() << ' ' << key.toStdString() << " is the standard key " << standard;
        }
}

TEST_F(WindowKeysTests, NoneIsAKeyOfTheTextThatMeansSomethingElse) {
    const std::map<QString, TextCommand> meant{
        {QStringLiteral("Deshacer"), TextCommand::undo}, {QStringLiteral("Rehacer"), TextCommand::redo},
        {QStringLiteral("Cortar"), TextCommand::cut},    {QStringLiteral("Copiar"), TextCommand::copy},
        {QStringLiteral("Pegar"), TextCommand::paste},   {QStringLiteral("Seleccionar todo"), TextCommand::selectAll},
    };
    open("[1");
    for (const auto& [name, title] : windowKeys()) {
        const QKeyCombination key = Key(name)[0];
        const QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers());
        const std::optional<TextKeyMeaning> meaning = meaningOf(event);
        if (const auto found = meant.find(title); found != meant.end() && meaning) {
            EXPECT_EQ(std::get<TextCommand>(*meaning), found->second) << title.toStdString();
        } else {
            EXPECT_FALSE(meaning) << title.toStdString() << ' ' << name.toStdString();
        }
    }
}

TEST_F(WindowKeysTests, NoneIsAKeyOfTheTree) {
    std::set<QString> tree;
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End}) {
        tree.insert(name(key));
        tree.insert(name(Qt::SHIFT | key));
    }
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right})
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::AltModifier), Qt::KeyboardModifiers(Qt::ShiftModifier),
              Qt::KeyboardModifiers(Qt::ControlModifier)})
            tree.insert(name(QKeyCombination(modifiers, key)));
    for (const auto key :
         {QKeyCombination(Qt::CTRL, Qt::Key_Home), QKeyCombination(Qt::CTRL, Qt::Key_End),
          QKeyCombination(Qt::SHIFT, Qt::Key_F10), QKeyCombination(Qt::Key_F2), QKeyCombination(Qt::Key_Return),
          QKeyCombination(Qt::Key_Enter), QKeyCombination(Qt::Key_Delete), QKeyCombination(Qt::Key_Menu),
          QKeyCombination(Qt::Key_Escape), QKeyCombination(Qt::Key_Tab)})
        tree.insert(name(key));
    open("[1]");
    for (const auto& [key, title] : windowKeys())
        EXPECT_FALSE(tree.contains(key)) << title.toStdString() << ' ' << key.toStdString();
}

TEST_F(WindowKeysTests, ThoseOfTheFindBarAreTheMenusOrOfItsFieldsOnly) {
    open("[1");
    QAction* insertion = nullptr;
    for (QAction* action : window->findChildren<QAction*>())
        if (action->shortcuts().contains(Key(Qt::CTRL | Qt::Key_Return)))
            insertion = action;
    ASSERT_NE(insertion, nullptr);
    // Replacing everything has the same key in the fields, where there is no tree.
    EXPECT_FALSE(insertion->isEnabled());
    const auto keys = windowKeys();
    for (const QKeyCombination key :
         {QKeyCombination(Qt::Key_Return), Qt::SHIFT | Qt::Key_Return, QKeyCombination(Qt::Key_Escape)})
        EXPECT_EQ(keys.count(name(key)), 0u);
}

TEST_F(WindowKeysTests, LettersOfAMenuAreThereOnce) {
    open("[1]");
    QList<QList<QAction*>> menus{window->menuBar()->actions()};
    for (const QAction* action : window->menuBar()->actions())
        menus += action->menu()->actions();
    for (const QList<QAction*>& actions : menus) {
        std::map<QString, std::string> letters;
        for (const QAction* action : actions) {
            const QString letter = Key::mnemonic(action->text()).toString();
            if (letter.isEmpty())
                continue;
            EXPECT_TRUE(letters.emplace(letter, action->text().toStdString()).second)
                << action->text().toStdString() << " and " << letters[letter];
        }
    }
}

} // namespace
} // namespace quelm
