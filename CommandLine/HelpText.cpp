#include "CommandLine/HelpText.h"

// The build defines QUELM_VERSION as a string literal. Literals joined here need no work when the program
// starts.
#define QUELM_USAGE                                                                                                    \
    "Uso: quelm-cli check ARCHIVO...\n"                                                                                \
    "     quelm-cli format [--indent twoSpaces|fourSpaces|tab] [--sort-keys] [-o SALIDA] ARCHIVO\n"                    \
    "     quelm-cli compact [-o SALIDA] ARCHIVO\n"                                                                     \
    "     quelm-cli --help | --version\n"

namespace quelm::helpText {

std::string_view usage() {
    return QUELM_USAGE;
}

std::string_view full() {
    return QUELM_USAGE R"(
Comprueba archivos JSON y les da formato.

Órdenes:
  check      dice de cada archivo si es válido, cuántos nodos tiene y cómo está escrito
  format     escribe el archivo con un elemento por línea
  compact    escribe el archivo sin espacios ni saltos de línea

Opciones:
  --indent   la sangría: twoSpaces (dos espacios, si no se indica otra), fourSpaces (cuatro) o tab (tabulador)
  --sort-keys
             ordena las claves de cada objeto
  -o SALIDA  escribe en el archivo SALIDA, que puede ser el mismo que se lee; sin ella, en la salida estándar
  --         lo que sigue son archivos, aunque empiece por un guion

El archivo - es la entrada estándar. Un archivo con errores no cambia nada: el error se dice con su línea y su columna.

Termina con 0 si todo fue bien, con 1 si algún archivo no es JSON válido y con 2 si algún archivo no se puede leer o
escribir o si los argumentos son incorrectos.
)";
}

std::string_view version() {
    return "quelm-cli " QUELM_VERSION "\n";
}

} // namespace quelm::helpText
