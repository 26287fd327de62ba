#include "ui/style/brevlin_mark.h"

#include "ui/style/theme.h"

#include <QPainter>

#include <array>
#include <span>

namespace brevlin {

namespace {

constexpr double gridSize = 627;
constexpr double iconPadding = 0.08; // of the icon's size, on every edge

struct Curve
{
    QPointF end;
    QPointF firstControl;
    QPointF secondControl;
};

constexpr QPointF upperStart{313.5, 69.5};
constexpr std::array upperCurves{
    Curve{{328.5, 84.5}, {322, 69.5}, {328.5, 75.5}}, Curve{{388.5, 217}, {328.5, 155}, {341, 186}},
    Curve{{463.5, 263}, {412, 232.5}, {442.5, 248}},  Curve{{493, 304}, {485, 278.5}, {498, 296}},
    Curve{{437.5, 342}, {486.5, 316}, {465, 337}},    Curve{{317.5, 333.5}, {397.5, 349.5}, {356.5, 340.5}},
    Curve{{204, 317}, {272.5, 325}, {238, 315}},      Curve{{131, 345.5}, {173, 319}, {147, 328}},
    Curve{{147.5, 285.5}, {126, 324}, {131, 304}},    Curve{{238.5, 221}, {168.5, 262}, {212, 236.5}},
    Curve{{299, 84.5}, {282, 195}, {297, 152}},       Curve{{313.5, 69.5}, {299.5, 75.5}, {305.5, 69.5}},
};

constexpr QPointF lowerStart{313.5, 551.5};
constexpr std::array lowerCurves{
    Curve{{301, 539}, {307.5, 551.5}, {304.5, 548}},       Curve{{230, 431}, {284, 495}, {265, 462}},
    Curve{{147.5, 369.5}, {206.5, 410.5}, {168.5, 387.5}}, Curve{{140, 362.5}, {143, 365.5}, {140, 362.5}},
    Curve{{205.5, 337.5}, {153.5, 342}, {178.5, 336.5}},   Curve{{314.5, 355}, {242.5, 338.5}, {277, 348}},
    Curve{{425.5, 362}, {355.5, 363}, {395, 367}},         Curve{{499, 324.5}, {457, 357}, {483, 344.5}},
    Curve{{458, 399}, {500, 354}, {483, 378.5}},           Curve{{362, 479}, {432, 420}, {390, 447}},
    Curve{{321, 546.5}, {339.5, 504.5}, {326, 535}},       Curve{{313.5, 551.5}, {319.5, 550}, {317, 551.5}},
};

void addOutline(QPainterPath& path, QPointF start, std::span<const Curve> curves, const QRectF& rect)
{
    const auto placed = [&rect](QPointF point) {
        return QPointF(rect.left() + rect.width() * point.x() / gridSize,
                       rect.top() + rect.height() * point.y() / gridSize);
    };
    path.moveTo(placed(start));
    for (const Curve& curve : curves)
        path.cubicTo(placed(curve.firstControl), placed(curve.secondControl), placed(curve.end));
    path.closeSubpath();
}

QRectF padded(const QRectF& rect)
{
    const double padding = iconPadding * rect.width();
    return rect.adjusted(padding, padding, -padding, -padding);
}

QRectF centredSquare(const QWidget& widget, int size)
{
    return {(widget.width() - size) / 2.0, (widget.height() - size) / 2.0, static_cast<double>(size),
            static_cast<double>(size)};
}

} // namespace

QPainterPath brevlinMarkPath(BrevlinMarkPart part, const QRectF& rect)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    if (part != BrevlinMarkPart::lower)
        addOutline(path, upperStart, upperCurves, rect);
    if (part != BrevlinMarkPart::upper)
        addOutline(path, lowerStart, lowerCurves, rect);
    return path;
}

void paintBrevlinLogo(QPainter& painter, const QRectF& rect, const Theme& theme, std::optional<QColor> color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF mark = padded(rect);
    painter.fillPath(brevlinMarkPath(BrevlinMarkPart::upper, mark),
                     color.value_or(theme.color(ThemeColor::breakGreen)));
    painter.fillPath(brevlinMarkPath(BrevlinMarkPart::lower, mark),
                     color.value_or(theme.color(ThemeColor::focus)));
    painter.restore();
}

void paintPhaseIcon(QPainter& painter, const QRectF& rect, TimerPhase phase, const Theme& theme)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (phase != TimerPhase::focus) {
        painter.translate(rect.center());
        painter.rotate(45);
        painter.translate(-rect.center());
    }
    painter.fillPath(brevlinMarkPath(BrevlinMarkPart::both, padded(rect)), theme.color(phaseColor(phase)));
    painter.restore();
}

BrevlinLogoView::BrevlinLogoView(int size, QWidget* parent) : QWidget(parent), m_size(size)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void BrevlinLogoView::setColor(std::optional<QColor> color)
{
    m_color = color;
    update();
}

QSize BrevlinLogoView::sizeHint() const
{
    return {m_size, m_size};
}

void BrevlinLogoView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintBrevlinLogo(painter, centredSquare(*this, m_size), Theme::of(*this), m_color);
}

PhaseIconView::PhaseIconView(TimerPhase phase, int size, QWidget* parent)
    : QWidget(parent), m_phase(phase), m_size(size)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

QSize PhaseIconView::sizeHint() const
{
    return {m_size, m_size};
}

void PhaseIconView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPhaseIcon(painter, centredSquare(*this, m_size), m_phase, Theme::of(*this));
}

} // namespace brevlin
