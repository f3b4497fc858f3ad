#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>

#include <cstring>

/// The least that a program with a window does: what starting the editor is measured against. With "--menu" the window
/// shows one word, so that it needs a font.
int main(int count, char** arguments) {
    QApplication application(count, arguments);
    QMainWindow window;
    if (count > 1 && std::strcmp(arguments[1], "--menu") == 0)
        window.menuBar()->addMenu(QStringLiteral("Menu"));
    window.resize(860, 760);
    window.show();
    return QApplication::exec();
}
