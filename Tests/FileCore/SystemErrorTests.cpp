#include "FileCore/SystemError.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(SystemError, CommonReasonsAreToldInSpanish) {
    EXPECT_EQ(SystemError{ENOENT}.description(), "no existe");
    EXPECT_EQ(SystemError{EACCES}.description(), "permiso denegado");
    EXPECT_EQ(SystemError{EISDIR}.description(), "es una carpeta");
    EXPECT_EQ(SystemError{ENOTDIR}.description(), "una parte de la ruta no es una carpeta");
    EXPECT_EQ(SystemError{ENOSPC}.description(), "no queda espacio");
    EXPECT_EQ(SystemError{ENOMEM}.description(), "no hay memoria suficiente");
    EXPECT_EQ(SystemError{EROFS}.description(), "el sistema de archivos es de solo lectura");
}

TEST(SystemError, AReasonWithoutWordsHereIsToldByItsNumber) {
    EXPECT_THAT(SystemError{EL2HLT}.description(),
                testing::StartsWith("error " + std::to_string(EL2HLT) + " del sistema ("));
}

TEST(SystemError, TheLastErrorIsThatOfTheCallThatFailed) {
    ASSERT_EQ(::open("/no existe", O_RDONLY), -1);
    EXPECT_EQ(SystemError::last(), SystemError{ENOENT});
}

} // namespace
} // namespace quelm
