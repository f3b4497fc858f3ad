#include "Quelm/Application/QuelmApp.h"

#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/Capture.h"
#include "Quelm/Application/FontPreparation.h"
#include "Quelm/Application/InstanceClient.h"
#include "Quelm/Application/LaunchArguments.h"
#include "Quelm/Application/Localization.h"
#include "Quelm/Application/Look.h"
#include "Quelm/Application/Session.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/Recovery/RecoveryFolder.h"

#include <QApplication>
#include <QFileInfo>
#include <QTimer>

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

/// The role of this process among those of its kind, for a command line that opens windows; absent for any other.
std::optional<InstanceClaim> claimInstanceFor(std::span<char*> raw) {
    QStringList words;
    for (const char* word : raw.subspan(1))
        words += QString::fromLocal8Bit(word);
    const auto arguments = LaunchArguments::parse(words);
    const auto address = InstanceAddress::own();
    if (!arguments || arguments->task != LaunchArguments::Task::openWindows || !address)
        return std::nullopt;
    // Another program does not change its looks for this one.
    if (arguments->appearance)
        return InstanceClaim{.isHandedOver = false, .socket = InstanceSocket::claim(*address)};
    InstanceRequest request;
    for (const QString& file : arguments->files)
        request.paths.push_back(QFileInfo(file).absoluteFilePath().toStdString());
    return claimInstance(*address, request);
}

int openWindows(const QStringList& files, std::optional<InstanceClaim> claim) {
    QuelmApp quelm;
    quelm.recoverWork();
    quelm.followSystem();
    if (claim && claim->socket)
        quelm.answerOthers(*std::move(claim->socket));
    quelm.openWindows(files);
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

    // Before anything that takes its time.
    std::optional<InstanceClaim> claim = claimInstanceFor(raw);
    if (claim && claim->isHandedOver)
        return 0;

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
        return quelm::openWindows(arguments->files, std::move(claim));
    QuelmApp quelm;
    return captureWindow(quelm.documents(), arguments->files.constFirst(), arguments->capturePath,
                         arguments->captureScale);
}

QuelmApp::QuelmApp()
    : documents_([this](EditorView& window) { addWindowMenus(window, documents_); }),
      recovery_(documents_, recoveryFolder()) {
    QObject::connect(&documents_, &DocumentController::madeWindow, &appDelegate_, &AppDelegate::observe);
    QObject::connect(
        &documents_, &DocumentController::becameIdle, &appDelegate_, [this] { endWhenIdle(); }, Qt::QueuedConnection);
    QObject::connect(
        &recovery_, &WorkRecovery::becameIdle, &appDelegate_, [this] { endWhenIdle(); }, Qt::QueuedConnection);
}

void QuelmApp::recoverWork() {
    documents_.keepJournals(recoveryFolder());
    // The first window comes first.
    QTimer::singleShot(0, &recovery_, &WorkRecovery::start);
}

void QuelmApp::openWindows(const QStringList& files) {
    const QStringList session = files.isEmpty() ? Session::take() : QStringList();
    if (!session.isEmpty())
        documents_.reopen(session);
    else if (files.isEmpty())
        documents_.newDocument();
    documents_.open(files);
}

void QuelmApp::answerOthers(InstanceSocket socket) {
    server_ = std::make_unique<InstanceServer>(std::move(socket));
    QObject::connect(server_.get(), &InstanceServer::requested, server_.get(),
                     [this](const InstanceRequest& request) { fulfil(request); });
}

void QuelmApp::fulfil(const InstanceRequest& request) {
    if (request.paths.empty()) {
        documents_.newDocument();
        bringForward(*documents_.windows().back());
    }
    QStringList paths;
    for (const std::string& path : request.paths)
        paths += QString::fromStdString(path);
    documents_.open(paths);
}

void QuelmApp::followSystem() {
    endSignals_ = std::make_unique<EndSignals>();
    QObject::connect(endSignals_.get(), &EndSignals::received, endSignals_.get(),
                     [this](int signal) { endOnSignal(signal); });
    // A session that is about to end may yet be kept: only what the next start needs is put down.
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, endSignals_.get(),
                     [this] { documents_.rememberSession(); });
}

void QuelmApp::endOnSignal(int signal) {
    // As a shell tells of a process that a signal has ended.
    constexpr int signalled = 128;
    documents_.rememberSession();
    end(signalled + signal);
}

void QuelmApp::endWhenIdle() {
    // Queued: a window may have opened since. What is being recovered is still to get one.
    if (!documents_.isIdle() || !recovery_.isIdle())
        return;
    if (documents_.hasOnlyFailed())
        end(nothingOpened);
    else if (appDelegate_.shouldTerminateAfterLastWindowClosed())
        end(0);
}

/// Others must not be promised anymore that this one does what they want: they do it themselves.
void QuelmApp::end(int status) {
    server_.reset();
    QCoreApplication::exit(status);
}

} // namespace quelm
