#pragma once

#include "JSONCore/JSONParseError.h"

#include <QString>

namespace quelm {

/// "Línea 3, columna 14: Se esperaba ',' o '}'" in the user's language.
QString parseErrorText(const JSONParseError& error);

} // namespace quelm
