#pragma once

#include "TextCore/TextRope.h"

#include <QMimeData>

#include <utility>

namespace quelm {

/// A text for the clipboard or a drag, taken over in O(1). Who asks for its characters pays for them, at each time, in
/// proportion to their number.
class TextMimeData : public QMimeData {
    Q_OBJECT

public:
    explicit TextMimeData(TextRope text) : text_(std::move(text)) {}

    /// Says whose selection this is, for the drag of one.
    void setOwner(const QObject& owner) { owner_ = &owner; }
    bool isOwnedBy(const QObject& object) const { return owner_ == &object; }

    /// The text as it is kept, for whoever inserts it into another one.
    const TextRope& rope() const { return text_; }

    bool hasFormat(const QString& mimeType) const override;
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType preferredType) const override;

private:
    QString string() const;

    TextRope text_;
    const QObject* owner_ = nullptr;
};

} // namespace quelm
