#include "Quelm/Documents/ParseErrorText.h"

#include <QCoreApplication>

namespace quelm {

QString parseErrorText(const JSONParseError& error) {
    const QString message = QCoreApplication::translate("quelm::JSONParseError", error.message.c_str());
    const QString place = QCoreApplication::translate("quelm::JSONParseError", "Línea %1, columna %2: ");
    return place.arg(error.line).arg(error.column) + message;
}

} // namespace quelm
