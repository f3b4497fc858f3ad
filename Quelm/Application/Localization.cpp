#include "Quelm/Application/Localization.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <algorithm>
#include <array>
#include <string_view>

namespace quelm {

namespace {

/// The few texts of dialogs that Qt's own Spanish translation lacks, and names of keys that nobody calls so.
class MissingTranslations : public QTranslator {
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* source, const char*, int) const override {
        const auto* found = std::ranges::find_if(texts, [&](const Text& text) {
            return context && source && text.context == context && text.source == source;
        });
        return found == texts.end() ? QString() : QString::fromUtf8(found->spanish);
    }

private:
    struct Text {
        std::string_view context;
        std::string_view source;
        const char* spanish;
    };
    static constexpr std::array<Text, 14> texts{{
        {"QAbstractFileIconProvider", "Alias", "Alias"},
        {"QAbstractFileIconProvider", "Drive", "Unidad"},
        {"QAbstractFileIconProvider", "File", "Archivo"},
        {"QAbstractFileIconProvider", "%1 File", "Archivo %1"},
        {"QAbstractFileIconProvider", "File Folder", "Carpeta"},
        {"QAbstractFileIconProvider", "Folder", "Carpeta"},
        {"QAbstractFileIconProvider", "Shortcut", "Acceso directo"},
        {"QAbstractFileIconProvider", "Unknown", "Desconocido"},
        {"QStandardPaths", "Public", "Público"},
        {"QStandardPaths", "Templates", "Plantillas"},
        // As the keys are labelled.
        {"QShortcut", "Ctrl", "Ctrl"},
        {"QShortcut", "Del", "Supr"},
        {"QShortcut", "Return", "Intro"},
        {"QShortcut", "Shift", "Mayús"},
    }};
};

} // namespace

void installTranslations(QApplication& application) {
    // Numbers and dates go with the texts around them.
    if (QLocale::system().language() != QLocale::Spanish)
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    auto* translator = new QTranslator(&application);
    if (translator->load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
    QApplication::installTranslator(new MissingTranslations(&application));
}

} // namespace quelm
