#include "Quelm/Application/Capture.h"

#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/Documents/DocumentLoading.h"

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

#include <cstdio>

namespace quelm {

namespace {

constexpr int failure = 2;

int fail(const QString& file, const QString& message) {
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(file), qUtf8Printable(message));
    return failure;
}

} // namespace

int captureWindow(DocumentController& controller, const QString& file, const QString& imageFile, double scale) {
    if (QFileInfo(imageFile).suffix().compare(QStringLiteral("png"), Qt::CaseInsensitive) != 0)
        return fail(imageFile,
                    QCoreApplication::translate("quelm::Capture", "El nombre de la imagen debe acabar en .png."));
    std::expected<LoadedDocument, FileError> loaded = loadDocument(file);
    if (!loaded)
        return fail(file, loaded.error().message);

    const QString location = QFileInfo(file).absoluteFilePath();
    EditorView window(std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(location)));
    addWindowMenus(window, controller);
    window.document().apply(std::move(loaded->content));
    window.showDocument();
    window.resize(EditorView::defaultSize());

    QImage image(window.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    // The first time finds the sizes out; whether scroll bars are needed follows from them.
    window.render(&image);
    QCoreApplication::processEvents();
    window.render(&image);
    QSaveFile output(imageFile);
    if (!output.open(QIODevice::WriteOnly) || !image.save(&output, "png") || !output.commit())
        return fail(imageFile, QCoreApplication::translate("quelm::Capture", "No se pudo escribir la imagen."));
    return 0;
}

} // namespace quelm
