#include "Quelm/Documents/ConversionError.h"

#include "Quelm/Documents/ParseErrorText.h"

#include <QCoreApplication>

#include <utility>

namespace quelm {

ConversionError::ConversionError(JSONParseError error) : parseError_(std::move(error)) {}

ConversionError ConversionError::outOfMemory() {
    return {};
}

QString ConversionError::description() const {
    if (parseError_)
        return parseErrorText(*parseError_);
    return QCoreApplication::translate("quelm::ConversionError",
                                       "No hay memoria suficiente para convertir el documento.");
}

} // namespace quelm
