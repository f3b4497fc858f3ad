#include "Quelm/Application/Localization.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace quelm {

void installTranslations(QApplication& application) {
    auto* translator = new QTranslator(&application);
    if (translator->load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application.installTranslator(translator);
}

} // namespace quelm
