#include "Quelm/EditorWindow/ModePicker.h"

#include "Quelm/EditorWindow/ControlPainting.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QRadioButton>

namespace quelm {

namespace {

constexpr float trackOpacity = 0.07F;
constexpr float hoverOpacity = 0.05F;
constexpr float pressedOpacity = 0.10F;
/// What is raised stands out by its brightness: over a dark track it needs a tint of its own.
constexpr float raisedOpacityInTheDark = 0.20F;
constexpr float edgeOpacity = 0.16F;

int trackMargin() {
    return scaledPixels(2);
}

double trackRadius() {
    return scaledPixels(7);
}

} // namespace

/// One of the two: checked while its mode is shown.
class ModePicker::Segment : public QRadioButton {
public:
    Segment(EditorMode mode, const QString& title, const QString& symbol, const QString& toolTip, ModePicker& picker)
        : QRadioButton(title, &picker), mode_(mode), symbol_(symbol), picker_(picker) {
        setAccessibleName(title);
        setToolTip(toolTip);
        setFont(systemFont(TextStyle::body));
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        connect(this, &QRadioButton::clicked, this, [this] { picker_.choose(mode_); });
    }

    QSize sizeHint() const override {
        const int textWidth = fontMetrics().horizontalAdvance(text());
        return {2 * padding() + symbolSide() + gap() + textWidth, scaledPixels(24)};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    /// It is checked when the mode is there.
    void nextCheckState() override {}
    bool hitButton(const QPoint& place) const override { return rect().contains(place); }

    void keyPressEvent(QKeyEvent* event) override {
        switch (event->key()) {
        case Qt::Key_Left:
            return picker_.choose(EditorMode::tree);
        case Qt::Key_Right:
            return picker_.choose(EditorMode::text);
        case Qt::Key_Up:
        case Qt::Key_Down:
            return event->ignore();
        default:
            return QRadioButton::keyPressEvent(event);
        }
    }

    void paintEvent(QPaintEvent*) override {
        const Appearance appearance = appearanceOf(palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintGround(painter, appearance);
        paintLabel(painter, appearance);
    }

private:
    static int padding() { return scaledPixels(10); }
    static int gap() { return scaledPixels(6); }
    static int symbolSide() { return scaledPixels(16); }

    void paintGround(QPainter& painter, Appearance appearance) const {
        const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const double radius = trackRadius() - trackMargin();
        const QColor text = semanticColor(ColorRole::text, appearance);
        if (isChecked()) {
            painter.setBrush(appearance == Appearance::dark
                                 ? translucent(text, isEnabled() ? raisedOpacityInTheDark : trackOpacity)
                                 : semanticColor(ColorRole::contentBackground, appearance));
            painter.setPen(QPen(translucent(text, isEnabled() ? edgeOpacity : trackOpacity), 1));
            painter.drawRoundedRect(area, radius, radius);
        } else if (isEnabled() && (isDown() || underMouse())) {
            paintTint(painter, area, radius, appearance, isDown() ? pressedOpacity : hoverOpacity);
        }
        if (hasFocus())
            paintFocusRing(painter, QRectF(rect()), radius, appearance);
    }

    void paintLabel(QPainter& painter, Appearance appearance) const {
        const int side = symbolSide();
        const QRectF symbolArea(padding(), (height() - side) / 2, side, side);
        const auto color = [&](ColorRole role) {
            return semanticColor(isEnabled() ? role : ColorRole::disabledText, appearance);
        };
        paintSymbol(painter, symbol_, symbolArea, color(isChecked() ? ColorRole::blue : ColorRole::secondaryText));
        painter.setPen(color(isChecked() ? ColorRole::text : ColorRole::secondaryText));
        painter.drawText(rect().adjusted(padding() + side + gap(), 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text());
    }

    const EditorMode mode_;
    const QString symbol_;
    ModePicker& picker_;
};

ModePicker::ModePicker(QWidget* parent)
    : QWidget(parent), segments_{new Segment(EditorMode::tree, tr("Árbol"), QStringLiteral("list.bullet.indent"),
                                             tr("Mostrar como árbol"), *this),
                                 new Segment(EditorMode::text, tr("Texto"), QStringLiteral("curlybraces"),
                                             tr("Mostrar como texto"), *this)} {
    setAccessibleName(tr("Modo"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(trackMargin(), trackMargin(), trackMargin(), trackMargin());
    layout->setSpacing(trackMargin());
    for (Segment* segment : segments_)
        layout->addWidget(segment);
    segments_.front()->setChecked(true);
    setFocusProxy(segments_.front());
}

void ModePicker::setMode(EditorMode mode) {
    if (mode_ == mode)
        return;
    mode_ = mode;
    Segment* segment = segments_[static_cast<std::size_t>(mode)];
    segment->setChecked(true);
    const bool hadFocus = focusProxy()->hasFocus();
    setFocusProxy(segment);
    if (hadFocus)
        segment->setFocus();
}

void ModePicker::choose(EditorMode mode) {
    if (mode != mode_)
        Q_EMIT modeChosen(mode);
}

void ModePicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintTint(painter, QRectF(rect()), trackRadius(), appearanceOf(palette()), trackOpacity);
}

} // namespace quelm
