#include "FileCore/SystemError.h"

#include <array>
#include <cstring>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

constexpr std::array<std::pair<int, std::string_view>, 23> reasons{{
    {ENOENT, "no existe"},
    {EACCES, "permiso denegado"},
    {EPERM, "operación no permitida"},
    {EISDIR, "es una carpeta"},
    {ENOTDIR, "una parte de la ruta no es una carpeta"},
    {ENOSPC, "no queda espacio"},
    {EDQUOT, "se ha superado la cuota de disco"},
    {EFBIG, "el archivo sería demasiado grande"},
    {EROFS, "el sistema de archivos es de solo lectura"},
    {ENAMETOOLONG, "el nombre es demasiado largo"},
    {ELOOP, "hay demasiados enlaces simbólicos en la ruta"},
    {EMFILE, "hay demasiados archivos abiertos"},
    {ENFILE, "hay demasiados archivos abiertos en el sistema"},
    {ENOMEM, "no hay memoria suficiente"},
    {EIO, "error de entrada o salida"},
    {EPIPE, "nadie lee la salida"},
    {EBADF, "no está abierto"},
    {EBUSY, "está en uso"},
    {ETXTBSY, "es un programa en ejecución"},
    {EXDEV, "está en otro sistema de archivos"},
    {ENXIO, "el dispositivo no existe"},
    {ENODEV, "el dispositivo no existe"},
    {EINVAL, "el sistema no admite la operación"},
}};

} // namespace

std::string SystemError::description() const {
    for (const auto& [known, reason] : reasons) {
        if (known == code)
            return std::string(reason);
    }
    return "error " + std::to_string(code) + " del sistema (" + std::strerror(code) + ")";
}

} // namespace quelm
