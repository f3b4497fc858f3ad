#pragma once

#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/TextRope.h"

#include <QMimeData>

namespace quelm {

/// A stretch of a text, for the clipboard or a drag: a snapshot in O(log n). Who asks for its characters pays for them,
/// at each time, in proportion to their number.
class TextMimeData : public QMimeData {
    Q_OBJECT

public:
    TextMimeData(const TextRope& text, TextRange range);

    bool hasFormat(const QString& mimeType) const override;
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType preferredType) const override;

private:
    QString string() const;

    TextRope text_;
};

} // namespace quelm
