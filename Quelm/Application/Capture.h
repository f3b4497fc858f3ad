#pragma once

#include <QString>

namespace quelm {

class DocumentController;

/// Paints the window of a file, without showing it anywhere, into an image file with `scale` device pixels a logical
/// pixel. Returns the exit status of the program: 0, or 2 with a message on standard error when the file cannot be read
/// or the image not be written. An application must exist; `controller` stands behind the menus that are painted.
int captureWindow(DocumentController& controller, const QString& file, const QString& imageFile, double scale);

} // namespace quelm
