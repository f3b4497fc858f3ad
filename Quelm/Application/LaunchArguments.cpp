#include "Quelm/Application/LaunchArguments.h"

#include <QCoreApplication>
#include <QUrl>

namespace quelm {

namespace {

struct Launch {
    Q_DECLARE_TR_FUNCTIONS(quelm::LaunchArguments)
};

/// Reads the arguments one after the other.
class ArgumentReader {
public:
    explicit ArgumentReader(const QStringList& arguments) : arguments_(arguments) {}

    std::expected<LaunchArguments, QString> read() {
        while (position_ < arguments_.size() && error_.isEmpty())
            readOne(arguments_[position_++]);
        if (error_.isEmpty())
            checkWhole();
        if (!error_.isEmpty())
            return std::unexpected(error_);
        return result_;
    }

private:
    void readOne(const QString& argument) {
        const bool isOption = argument.startsWith(u'-') && argument.size() > 1 && !isAfterOptions_;
        if (!isOption)
            result_.files += pathOf(argument);
        else if (argument == QLatin1String("--"))
            isAfterOptions_ = true;
        else if (argument == QLatin1String("--help") || argument == QLatin1String("-h"))
            result_.task = LaunchArguments::Task::showHelp;
        else if (argument == QLatin1String("--version") || argument == QLatin1String("-v"))
            result_.task = LaunchArguments::Task::showVersion;
        else if (argument == QLatin1String("--capture"))
            readCapture(argument);
        else if (argument == QLatin1String("--scale"))
            readScale(argument);
        else if (argument == QLatin1String("--appearance"))
            readAppearance(argument);
        else
            error_ = Launch::tr("No existe la opción %1.").arg(argument);
    }

    /// Programs that list files may name them by addresses.
    static QString pathOf(const QString& argument) {
        if (!argument.startsWith(QLatin1String("file://")))
            return argument;
        const QString path = QUrl(argument).toLocalFile();
        return path.isEmpty() ? argument : path;
    }

    QString valueOf(const QString& option) {
        if (position_ == arguments_.size()) {
            error_ = Launch::tr("A la opción %1 le falta su valor.").arg(option);
            return {};
        }
        return arguments_[position_++];
    }

    void readCapture(const QString& option) {
        result_.task = LaunchArguments::Task::capture;
        result_.capturePath = valueOf(option);
    }

    void readScale(const QString& option) {
        const QString value = valueOf(option);
        bool isNumber = false;
        result_.captureScale = value.toDouble(&isNumber);
        const bool isInRange = isNumber && result_.captureScale > 0 && result_.captureScale <= 8;
        if (error_.isEmpty() && !isInRange)
            error_ = Launch::tr("La escala tiene que ser un número mayor que 0 y no mayor que 8, no «%1».").arg(value);
    }

    void readAppearance(const QString& option) {
        const QString value = valueOf(option);
        if (value == QLatin1String("light"))
            result_.appearance = Appearance::light;
        else if (value == QLatin1String("dark"))
            result_.appearance = Appearance::dark;
        else if (error_.isEmpty())
            error_ = Launch::tr("La apariencia tiene que ser light o dark, no «%1».").arg(value);
    }

    void checkWhole() {
        if (result_.task == LaunchArguments::Task::capture && result_.files.size() != 1)
            error_ = Launch::tr("Una captura necesita exactamente un archivo.");
    }

    const QStringList& arguments_;
    qsizetype position_ = 0;
    bool isAfterOptions_ = false;
    LaunchArguments result_;
    QString error_;
};

} // namespace

std::expected<LaunchArguments, QString> LaunchArguments::parse(const QStringList& arguments) {
    return ArgumentReader(arguments).read();
}

QString LaunchArguments::usage() {
    return Launch::tr("Uso: quelm [OPCIÓN]… [ARCHIVO]…\n"
                      "Editor de archivos JSON: abre una ventana por archivo, o un documento nuevo.\n"
                      "Si Quelm ya está abierto, los archivos se abren en él.\n"
                      "\n"
                      "  --capture PNG          pinta la ventana de un archivo en una imagen y termina\n"
                      "  --scale NÚMERO         puntos de la imagen por punto de la ventana (1)\n"
                      "  --appearance light|dark\n"
                      "                         ventanas claras u oscuras; si no, como el sistema\n"
                      "  -h, --help             muestra esta ayuda y termina\n"
                      "  -v, --version          muestra la versión y termina\n");
}

} // namespace quelm
