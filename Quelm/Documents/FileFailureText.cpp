#include "Quelm/Documents/FileFailureText.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace quelm {

namespace {

struct FileFailureText {
    Q_DECLARE_TR_FUNCTIONS(quelm::FileFailureText)
};

using Step = SaveFailure::Step;

QString folderNameOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

QString systemText(const LoadFailure& failure) {
    switch (failure.error.code) {
    case ENOENT:
    case ENOTDIR:
        return FileFailureText::tr("El archivo no existe.");
    case EACCES:
    case EPERM:
        return FileFailureText::tr("No tienes permiso para leer el archivo.");
    case ENOMEM:
        return FileFailureText::tr("No hay memoria suficiente para leer el archivo.");
    default:
        return FileFailureText::tr("La lectura del archivo falló: %1.")
            .arg(QString::fromStdString(failure.error.description()));
    }
}

/// What a step tried to do, with a place for the system's reason.
QString stepText(Step step) {
    switch (step) {
    case Step::find:
        return FileFailureText::tr("No se pudo llegar al archivo: %1.");
    case Step::create:
        return FileFailureText::tr("No se pudo crear el archivo: %1.");
    case Step::write:
    case Step::synchronize:
    case Step::writeInPlace:
        return FileFailureText::tr("La escritura del archivo falló: %1.");
    case Step::adopt:
        return FileFailureText::tr("No se pudieron conservar los permisos y atributos del archivo: %1.");
    case Step::replace:
        return FileFailureText::tr("No se pudo sustituir el archivo: %1.");
    case Step::backUp:
        return FileFailureText::tr("No se pudo copiar lo que contiene el archivo antes de escribir en él: %1.");
    case Step::restore:
        return FileFailureText::tr("La escritura del archivo falló a medias: %1.");
    }
    return {};
}

QString systemText(const SaveFailure& failure) {
    if (failure.step == Step::backUp && failure.error.code == EBUSY)
        return FileFailureText::tr("Otro programa estaba escribiendo en el archivo.");
    if (failure.error.code == ENOSPC && failure.step != Step::restore)
        return failure.step == Step::backUp
                   ? FileFailureText::tr("No queda espacio en el disco para copiar antes lo que contiene el archivo.")
                   : FileFailureText::tr("No queda espacio en el disco.");
    return stepText(failure.step).arg(QString::fromStdString(failure.error.description()));
}

} // namespace

QString loadFailureText(const LoadFailure& failure) {
    switch (failure.reason) {
    case LoadFailure::Reason::system:
        return systemText(failure);
    case LoadFailure::Reason::folder:
        return FileFailureText::tr("Es una carpeta, no un archivo.");
    case LoadFailure::Reason::notAFile:
        return FileFailureText::tr("No es un archivo normal, sino un dispositivo, una tubería o algo parecido.");
    case LoadFailure::Reason::tooLarge:
        return FileFailureText::tr("El archivo es demasiado grande.");
    case LoadFailure::Reason::noMemory:
        return FileFailureText::tr("No hay memoria suficiente para leer el archivo.");
    case LoadFailure::Reason::cancelled:
        return FileFailureText::tr("Se canceló la lectura del archivo.");
    }
    return {};
}

QString saveFailureText(const SaveFailure& failure, const QString& path) {
    const bool isReadOnlyDisk = failure.error.code == EROFS;
    switch (failure.reason) {
    case SaveFailure::Reason::system:
        return systemText(failure);
    case SaveFailure::Reason::folder:
        return FileFailureText::tr("Ya hay una carpeta con ese nombre.");
    case SaveFailure::Reason::notAFile:
        return FileFailureText::tr("Ya hay algo con ese nombre que no es un archivo normal.");
    case SaveFailure::Reason::noFolder:
        return FileFailureText::tr("La carpeta «%1» no existe.").arg(folderNameOf(path));
    case SaveFailure::Reason::readOnlyFile:
        return isReadOnlyDisk ? FileFailureText::tr("El archivo está en un disco de solo lectura.")
                              : FileFailureText::tr("No tienes permiso para escribir en el archivo.");
    case SaveFailure::Reason::readOnlyFolder:
        return (isReadOnlyDisk ? FileFailureText::tr("La carpeta «%1» está en un disco de solo lectura.")
                               : FileFailureText::tr("No tienes permiso para escribir en la carpeta «%1»."))
            .arg(folderNameOf(path));
    case SaveFailure::Reason::changedMeanwhile:
        return FileFailureText::tr("Otro programa ha escrito en el archivo mientras se guardaba.");
    case SaveFailure::Reason::notProduced:
        return FileFailureText::tr("No se llegó a escribir todo el archivo.");
    case SaveFailure::Reason::cancelled:
        return FileFailureText::tr("Se canceló la escritura del archivo.");
    }
    return {};
}

QString untouchedFileText(const SaveFailure& failure, const QString& path) {
    if (!failure.backup.empty())
        return FileFailureText::tr("El archivo puede haber quedado a medias; lo que contenía está a salvo en «%1».")
            .arg(QFile::decodeName(QByteArray::fromStdString(failure.backup)));
    if (failure.reason == SaveFailure::Reason::changedMeanwhile)
        return FileFailureText::tr("El archivo tiene lo que ha escrito el otro programa.");
    return QFileInfo(path).isFile() ? FileFailureText::tr("El archivo sigue como estaba.") : QString();
}

} // namespace quelm
