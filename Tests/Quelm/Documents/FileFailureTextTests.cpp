#include "Quelm/Documents/FileFailureText.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Reason = SaveFailure::Reason;
using Step = SaveFailure::Step;

const QString path = QStringLiteral("/datos/a.json");

struct SaveCase {
    SaveFailure failure;
    const char* text;
};

TEST(FileFailureText, EveryWayInWhichSavingFailsHasItsSentence) {
    const SaveCase cases[] = {
        {{Step::find, Reason::folder, {EISDIR}, {}}, "Ya hay una carpeta con ese nombre."},
        {{Step::find, Reason::notAFile, {}, {}}, "Ya hay algo con ese nombre que no es un archivo normal."},
        {{Step::find, Reason::noFolder, {ENOENT}, {}}, "La carpeta «/datos» no existe."},
        {{Step::find, Reason::readOnlyFile, {EACCES}, {}}, "No tienes permiso para escribir en el archivo."},
        {{Step::find, Reason::readOnlyFile, {EROFS}, {}}, "El archivo está en un disco de solo lectura."},
        {{Step::create, Reason::readOnlyFolder, {EACCES}, {}},
         "No tienes permiso para escribir en la carpeta «/datos»."},
        {{Step::create, Reason::readOnlyFolder, {EROFS}, {}}, "La carpeta «/datos» está en un disco de solo lectura."},
        {{Step::replace, Reason::notProduced, {}, {}}, "No se llegó a escribir todo el archivo."},
        {{Step::write, Reason::cancelled, {}, {}}, "Se canceló la escritura del archivo."},
        {SaveFailure::at(Step::find, {ELOOP}),
         "No se pudo llegar al archivo: hay demasiados enlaces simbólicos en la ruta."},
        {SaveFailure::at(Step::create, {ENAMETOOLONG}), "No se pudo crear el archivo: el nombre es demasiado largo."},
        {SaveFailure::at(Step::write, {ENOSPC}), "No queda espacio en el disco."},
        {SaveFailure::at(Step::synchronize, {ENOSPC}), "No queda espacio en el disco."},
        {SaveFailure::at(Step::write, {EDQUOT}), "La escritura del archivo falló: se ha superado la cuota de disco."},
        {SaveFailure::at(Step::synchronize, {EIO}), "La escritura del archivo falló: error de entrada o salida."},
        {SaveFailure::at(Step::adopt, {EIO}),
         "No se pudieron conservar los permisos y atributos del archivo: error de entrada o salida."},
        {SaveFailure::at(Step::replace, {EBUSY}), "No se pudo sustituir el archivo: está en uso."},
        {SaveFailure::at(Step::backUp, {EBUSY}), "Otro programa estaba escribiendo en el archivo."},
        {SaveFailure::at(Step::backUp, {ENOSPC}),
         "No queda espacio en el disco para copiar antes lo que contiene el archivo."},
        {SaveFailure::at(Step::backUp, {EACCES}),
         "No se pudo copiar lo que contiene el archivo antes de escribir en él: permiso denegado."},
        {SaveFailure::at(Step::writeInPlace, {EIO}), "La escritura del archivo falló: error de entrada o salida."},
        {SaveFailure::at(Step::restore, {ENOSPC}), "La escritura del archivo falló a medias: no queda espacio."},
    };
    for (const SaveCase& each : cases)
        EXPECT_EQ(saveFailureText(each.failure, path), QString::fromUtf8(each.text));
}

TEST(FileFailureText, EveryWayInWhichLoadingFailsHasItsSentence) {
    const std::pair<LoadFailure, const char*> cases[] = {
        {{LoadFailure::Reason::system, {ENOENT}}, "El archivo no existe."},
        {{LoadFailure::Reason::system, {ENOTDIR}}, "El archivo no existe."},
        {{LoadFailure::Reason::system, {EACCES}}, "No tienes permiso para leer el archivo."},
        {{LoadFailure::Reason::system, {EIO}}, "La lectura del archivo falló: error de entrada o salida."},
        {{LoadFailure::Reason::folder, {EISDIR}}, "Es una carpeta, no un archivo."},
        {{LoadFailure::Reason::notAFile, {}},
         "No es un archivo normal, sino un dispositivo, una tubería o algo parecido."},
        {{LoadFailure::Reason::tooLarge, {}}, "El archivo es demasiado grande."},
        {{LoadFailure::Reason::noMemory, {}}, "No hay memoria suficiente para leer el archivo."},
        {{LoadFailure::Reason::cancelled, {}}, "Se canceló la lectura del archivo."},
    };
    for (const auto& [failure, text] : cases)
        EXPECT_EQ(loadFailureText(failure), QString::fromUtf8(text));
}

TEST(FileFailureText, TheFormerContentsAreNamedWhereTheyAre) {
    const TemporaryFolder folder;
    const QString file = folder.write(QStringLiteral("a.json"), "");
    EXPECT_EQ(untouchedFileText({}, file), QStringLiteral("El archivo sigue como estaba."));
    EXPECT_EQ(untouchedFileText({}, folder.path(QStringLiteral("nada"))), QString());
    EXPECT_EQ(untouchedFileText({Step::replace, Reason::changedMeanwhile, {}, {}}, file),
              QStringLiteral("El archivo tiene lo que ha escrito el otro programa."));
    const SaveFailure failure{Step::restore, Reason::system, {EIO}, "/copias/1-0.backup"};
    EXPECT_EQ(untouchedFileText(failure, file),
              QStringLiteral("El archivo puede haber quedado a medias; lo que contenía está a salvo en "
                             "«/copias/1-0.backup»."));
}

} // namespace
} // namespace quelm
