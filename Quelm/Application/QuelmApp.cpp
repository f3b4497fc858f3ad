#include "Quelm/Application/QuelmApp.h"

#include "Quelm/Application/Capture.h"
#include "Quelm/Application/FontPreparation.h"
#include "Quelm/Application/LaunchArguments.h"
#include "Quelm/Application/Localization.h"
#include "Quelm/Application/Look.h"
#include "Quelm/Application/WindowMenus.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>

namespace quelm {

namespace {

constexpr int wrongUse = 2;
constexpr int nothingOpened = 1;

/// Whether a window could be put on a screen. Only X11 and Wayland have to be asked for.
bool hasDisplay() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

/// Whether the raw command line has one of the options, before Qt has taken its own out of it.
bool mentions(std::span<char*> arguments, std::initializer_list<std::string_view> options) {
    const auto given = arguments.subspan(1);
    // After two dashes everything is a file.
    const auto end =
        std::ranges::find(given, std::string_view("--"), [](const char* text) { return std::string_view(text); });
    return std::any_of(given.begin(), end, [&](std::string_view argument) {
        return std::ranges::find(options, argument) != options.end();
    });
}

int printAndEnd(const QString& text) {
    std::fputs(qUtf8Printable(text), stdout);
    return 0;
}

int complainAndEnd(const QString& message, int status) {
    std::fprintf(stderr, "quelm: %s\n", qUtf8Printable(message));
    return status;
}

/// Names the library with which Qt draws by OpenGL on X11.
constexpr char graphicsLibraryVariable[] = "QT_XCB_GL_INTEGRATION";

/// Nothing here is drawn by OpenGL, and loading what it needs makes up a good part of the start. Whether the variable
/// was set, which whatever is started from here must not inherit.
bool leaveGraphicsLibraryOut() {
    return !qEnvironmentVariableIsSet(graphicsLibraryVariable) && qputenv(graphicsLibraryVariable, "none");
}

QString versionText() {
    return QStringLiteral("Quelm %1\n").arg(QLatin1String(QUELM_VERSION));
}

void describeApplication() {
    QCoreApplication::setOrganizationName(QStringLiteral("Quelm"));
    QCoreApplication::setApplicationName(QStringLiteral("Quelm"));
    QCoreApplication::setApplicationVersion(QLatin1String(QUELM_VERSION));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Quelm"));
    QGuiApplication::setDesktopFileName(QStringLiteral("quelm"));
}

int openWindows(const QStringList& files) {
    QuelmApp quelm;
    if (files.isEmpty())
        quelm.documents().newDocument();
    for (const QString& file : files)
        quelm.documents().open(file);
    return QApplication::exec();
}

} // namespace

int QuelmApp::run(int argc, char** argv) {
    const std::span<char*> raw(argv, static_cast<std::size_t>(argc));
    if (mentions(raw, {"--help", "-h"}))
        return printAndEnd(LaunchArguments::usage());
    if (mentions(raw, {"--version", "-v"}))
        return printAndEnd(versionText());
    if (!hasDisplay() && mentions(raw, {"--capture"}))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (!hasDisplay() && !mentions(raw, {"-platform"}))
        return complainAndEnd(
            QCoreApplication::translate("quelm::QuelmApp", "No hay pantalla en la que abrir ventanas."), nothingOpened);

    // No variable may be set while another thread reads any.
    const bool isGraphicsLeftOut = leaveGraphicsLibraryOut();
    std::optional<FontPreparation> fonts(std::in_place);
    QApplication application(argc, argv);
    fonts.reset();
    if (isGraphicsLeftOut)
        qunsetenv(graphicsLibraryVariable);
    QApplication::setQuitOnLastWindowClosed(false);
    describeApplication();
    const auto arguments = LaunchArguments::parse(QApplication::arguments().mid(1));
    if (!arguments)
        return complainAndEnd(arguments.error(), wrongUse);
    installTranslations(application);
    applyLook(arguments->appearance);
    if (arguments->task != LaunchArguments::Task::capture)
        return openWindows(arguments->files);
    QuelmApp quelm;
    return captureWindow(quelm.documents(), arguments->files.constFirst(), arguments->capturePath,
                         arguments->captureScale);
}

QuelmApp::QuelmApp() : documents_([this](EditorView& window) { addWindowMenus(window, documents_); }) {
    QObject::connect(&documents_, &DocumentController::madeWindow, &appDelegate_, &AppDelegate::observe);
    QObject::connect(
        &documents_, &DocumentController::becameIdle, &appDelegate_, [this] { endWhenIdle(); }, Qt::QueuedConnection);
}

void QuelmApp::endWhenIdle() {
    // Queued: a window may have opened since.
    if (!documents_.isIdle())
        return;
    if (documents_.hasOnlyFailed())
        QCoreApplication::exit(nothingOpened);
    else if (appDelegate_.shouldTerminateAfterLastWindowClosed())
        QCoreApplication::exit(0);
}

} // namespace quelm
