#include "Quelm/Application/KeySections.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace quelm {

namespace {

struct KeySections {
    Q_DECLARE_TR_FUNCTIONS(quelm::KeySections)
};

/// What keyboards of today do not have is not worth naming.
bool isCommon(const QKeySequence& key) {
    const Qt::Key first = key[0].key();
    return first < Qt::Key_F13 || first > Qt::Key_F35;
}

QString namesOf(const QList<QKeySequence>& keys) {
    QStringList names;
    for (const QKeySequence& key : keys)
        if (const QString name = key.toString(QKeySequence::NativeText); isCommon(key) && !names.contains(name))
            names += name;
    return names.join(QStringLiteral(", "));
}

KeySection::Entry entry(const QString& title, const QList<QKeySequence>& keys) {
    return {title, namesOf(keys)};
}

KeySection::Entry entryOf(const QAction& item) {
    // An item may write a key of its own after its title.
    QString title = item.text().section(u'\t', 0, 0);
    title.remove(u'&');
    const QString ownKey = item.text().section(u'\t', 1);
    return ownKey.isEmpty() ? entry(title, item.shortcuts()) : KeySection::Entry{title, ownKey};
}

KeySection windowKeys() {
    return {KeySections::tr("En la ventana"),
            {
                entry(KeySections::tr("Ir a la barra de herramientas y volver"), {Qt::Key_F6}),
                entry(KeySections::tr("Cancelar la operación en curso"), {Qt::Key_Escape}),
            }};
}

KeySection treeKeys() {
    return {KeySections::tr("En el árbol"),
            {
                entry(KeySections::tr("Fila anterior"), {Qt::Key_Up}),
                entry(KeySections::tr("Fila siguiente"), {Qt::Key_Down}),
                entry(KeySections::tr("Primera fila"), {Qt::Key_Home}),
                entry(KeySections::tr("Última fila"), {Qt::Key_End}),
                entry(KeySections::tr("Expandir"), {Qt::Key_Right}),
                entry(KeySections::tr("Expandir con todo lo que contiene"), {Qt::ALT | Qt::Key_Right}),
                entry(KeySections::tr("Colapsar o ir al contenedor"), {Qt::Key_Left}),
                entry(KeySections::tr("Editar"), {Qt::Key_Return, Qt::Key_F2}),
                entry(KeySections::tr("Dar por bueno lo escrito"), {Qt::Key_Return}),
                entry(KeySections::tr("Pasar de la clave al valor"), {Qt::Key_Tab}),
                entry(KeySections::tr("Salto de línea en un valor largo"), {Qt::SHIFT | Qt::Key_Return}),
                entry(KeySections::tr("Descartar lo escrito"), {Qt::Key_Escape}),
                entry(KeySections::tr("Menú del nodo"), {Qt::Key_Menu, Qt::SHIFT | Qt::Key_F10}),
            }};
}

KeySection textKeys() {
    const auto standard = &QKeySequence::keyBindings;
    return {KeySections::tr("En el texto"),
            {
                entry(KeySections::tr("Palabra anterior"), standard(QKeySequence::MoveToPreviousWord)),
                entry(KeySections::tr("Palabra siguiente"), standard(QKeySequence::MoveToNextWord)),
                entry(KeySections::tr("Principio de la línea"), standard(QKeySequence::MoveToStartOfLine)),
                entry(KeySections::tr("Final de la línea"), standard(QKeySequence::MoveToEndOfLine)),
                entry(KeySections::tr("Principio del texto"), standard(QKeySequence::MoveToStartOfDocument)),
                entry(KeySections::tr("Final del texto"), standard(QKeySequence::MoveToEndOfDocument)),
                entry(KeySections::tr("Borrar la palabra anterior"), {Qt::CTRL | Qt::Key_Backspace}),
                entry(KeySections::tr("Borrar la palabra siguiente"), {Qt::CTRL | Qt::Key_Delete}),
                entry(KeySections::tr("Letra más grande"), {Qt::CTRL | Qt::Key_Plus}),
                entry(KeySections::tr("Letra más pequeña"), {Qt::CTRL | Qt::Key_Minus}),
                entry(KeySections::tr("Tamaño de letra normal"), {Qt::CTRL | Qt::Key_0}),
            }};
}

KeySection findKeys() {
    return {KeySections::tr("Al buscar"),
            {
                entry(KeySections::tr("Resultado siguiente"), {Qt::Key_Return}),
                entry(KeySections::tr("Resultado anterior"), {Qt::SHIFT | Qt::Key_Return}),
                entry(KeySections::tr("Reemplazar todo"), {Qt::CTRL | Qt::Key_Return}),
                entry(KeySections::tr("Cerrar la búsqueda"), {Qt::Key_Escape}),
            }};
}

} // namespace

QList<KeySection> menuKeys(const QMenuBar& menuBar) {
    QList<KeySection> sections;
    for (const QAction* heading : menuBar.actions()) {
        KeySection section{heading->text().remove(u'&'), {}};
        for (const QAction* item : heading->menu()->actions())
            if (const KeySection::Entry found = entryOf(*item); !found.keys.isEmpty())
                section.entries += found;
        if (!section.entries.isEmpty())
            sections += section;
    }
    return sections;
}

QList<KeySection> editorKeys() {
    return {windowKeys(), treeKeys(), textKeys(), findKeys()};
}

} // namespace quelm
