#include "ui/timer/timer_ring_view.h"

#include "app/app_model.h"
#include "core/time_text.h"
#include "ui/controls/direct_paint.h"
#include "ui/controls/numeric_text.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/animation.h"
#include "ui/style/brevlin_mark.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>

namespace brevlin {

namespace {

constexpr std::chrono::milliseconds progressDuration{350};
constexpr int smoothestSteps = 20;
// Below this the eye sees no step, so none is painted: a long phase moves its arc by a fraction of a point a
// second.
constexpr double visibleStep = 0.4; // points along the arc
constexpr double largeDiameter = 200.0;

QFont endTextFont(double diameter)
{
    return textFont(diameter > largeDiameter ? TextRole::caption : TextRole::smallCaption);
}

} // namespace

TimerRingView::TimerRingView(AppModel& model, const TimerRingMetrics& metrics, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_metrics(metrics)
    , m_time(new NumericText(systemFont(metrics.timeSize, QFont::DemiBold, FontDesign::rounded), this))
    , m_progress(*this)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    makeSpokenElement(*this, QAccessible::StaticText, [this] { return spokenText(); });

    connect(&m_progress, &ValueAnimation::valueChanged, this, &TimerRingView::repaintArc);
    connect(&model, &AppModel::remainingSecondsChanged, this, [this] {
        if (isVisible()) {
            updateTime();
            updateProgress();
        }
    });
    connect(&model, &AppModel::ticked, this, [this] {
        // The end of a paused phase moves on with the clock.
        if (isVisible() && endText() != m_endText) {
            updateTexts();
        }
    });
    connect(&model, &AppModel::snapshotChanged, this, [this] {
        const QString before = m_endText;
        updateTexts();
        const bool isMoved = !before.isEmpty() && !m_endText.isEmpty() && before != m_endText;
        if (isMoved && window()->isActiveWindow()) {
            announce(*this, m_endText);
        }
    });
    connect(&model, &AppModel::preferencesChanged, this, &TimerRingView::updateTexts);
    m_progress.setValue(model.progress());
    updateTexts();
}

void TimerRingView::setMetrics(const TimerRingMetrics& metrics)
{
    if (m_metrics != metrics) {
        m_metrics = metrics;
        m_time->setTextFont(systemFont(metrics.timeSize, QFont::DemiBold, FontDesign::rounded));
        updateGeometry();
        layOut();
        update();
    }
}

void TimerRingView::setBackdrop(ThemeColor backdrop)
{
    m_backdrop = backdrop;
    layOut();
}

int TimerRingView::overhang() const
{
    return static_cast<int>(std::ceil(m_metrics.lineWidth / 2));
}

QSize TimerRingView::sizeHint() const
{
    const int side = static_cast<int>(std::ceil(m_metrics.diameter)) + 2 * overhang();
    return {side, side};
}

QString TimerRingView::spokenText() const
{
    const AppLanguage language = m_model.language();
    const QString phase = qtText(title(m_model.snapshot().phase, language));
    const QString clock = qtText(TimeText::clock(m_model.remainingSeconds()));
    return language == AppLanguage::english
               ? phase + QStringLiteral(", ") + clock + QStringLiteral(" remaining")
               : phase + QStringLiteral("，剩余 ") + clock;
}

void TimerRingView::updateTime()
{
    m_time->setText(qtText(TimeText::clock(m_model.remainingSeconds())));
}

QString TimerRingView::endText() const
{
    if (!m_model.snapshot().isActive()) {
        return {};
    }
    const BilingualText introduction{"预计结束于 ", "Estimated end "};
    return qtText(introduction.in(m_model.language())) + qtText(m_model.endTimeText());
}

// In the small ring the English line would run across the stroke; its time goes below then.
QStringList TimerRingView::endLines(double heightAbove) const
{
    if (m_endText.isEmpty()) {
        return {};
    }
    const QFontMetricsF metrics(endTextFont(m_metrics.diameter));
    const double radius = (m_metrics.diameter - m_metrics.lineWidth) / 2;
    const double bottom = (heightAbove + std::ceil(metrics.height())) / 2;
    const double room = 2 * std::sqrt(std::max(0.0, radius * radius - bottom * bottom));
    const QString time = qtText(m_model.endTimeText());
    if (m_metrics.diameter > largeDiameter || metrics.horizontalAdvance(m_endText) <= room) {
        return {m_endText};
    }
    return {m_endText.chopped(time.size()).trimmed(), time};
}

void TimerRingView::updateTexts()
{
    m_phase = m_model.snapshot().phase;
    m_endText = endText();
    updateTime();
    updateProgress();
    layOut();
    update();
}

void TimerRingView::updateProgress()
{
    const double target = m_model.progress();
    const double circumference = std::numbers::pi * circle().width();
    const int steps = static_cast<int>(std::abs(target - m_progress.value()) * circumference / visibleStep);
    if (steps == 0 && target > 0.0) {
        return; // until enough has come together
    }
    if (steps <= 1) {
        m_progress.setValue(target); // in the frame in which the digits change, not in one of its own
        return;
    }
    m_progress.animateTo(target, {progressDuration, QEasingCurve::Linear, std::min(steps, smoothestSteps)});
}

void TimerRingView::repaintArc(double progress)
{
    const QRect part = arcBounds(m_paintedProgress, progress) & rect();
    m_paintedProgress = progress;
    const bool isPainted = m_backdrop && paintDirectly(*this, part, [&](QPainter& painter) {
                               painter.fillRect(part, Theme::of(*this).color(*m_backdrop));
                               paint(painter, part);
                           });
    if (!isPainted) {
        update(part);
    }
}

void TimerRingView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_progress.setValue(m_model.progress());
    m_time->setFades(false); // from what it showed when it was hidden
    updateTexts();
    m_time->setFades(true);
}

void TimerRingView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layOut();
}

double TimerRingView::spacing() const
{
    return m_metrics.diameter > largeDiameter ? 9.0 : 4.0;
}

void TimerRingView::layOut()
{
    const QRectF bounds = rect();
    const QSizeF timeSize = m_time->sizeHint();
    const double timeBottom = m_metrics.iconSize + spacing() + timeSize.height();
    m_endLines = endLines(timeBottom + spacing());
    const double endHeight = std::ceil(QFontMetricsF(endTextFont(m_metrics.diameter)).height()) *
                             static_cast<double>(m_endLines.size());
    const double height = timeBottom + (m_endText.isEmpty() ? 0.0 : spacing() + endHeight);
    double top = std::round(bounds.center().y() - height / 2);
    m_iconRect =
        QRectF(bounds.center().x() - m_metrics.iconSize / 2, top, m_metrics.iconSize, m_metrics.iconSize);
    top += m_metrics.iconSize + spacing();
    const QSize time = timeSize.toSize();
    // Digits leave the ends of their line empty, and without these the line's corners stay clear of the ring.
    const int empty = time.height() / 8;
    m_time->setGeometry(QRect(QPoint((width() - time.width()) / 2, static_cast<int>(std::round(top))), time)
                            .adjusted(0, empty, 0, -empty));
    m_time->setBackdrop(liesInsideRing(m_time->geometry()) ? m_backdrop : std::nullopt);
    top += timeSize.height() + spacing();
    m_endTextRect = QRectF(0, top, bounds.width(), endHeight);
}

bool TimerRingView::liesInsideRing(const QRectF& place) const
{
    const double radius = (circle().width() - m_metrics.lineWidth) / 2;
    const QPointF center = circle().center();
    const double x = std::max(center.x() - place.left(), place.right() - center.x());
    const double y = std::max(center.y() - place.top(), place.bottom() - center.y());
    return std::hypot(x, y) < radius;
}

QRectF TimerRingView::circle() const
{
    const double side = m_metrics.diameter;
    const QPointF center = QRectF(rect()).center();
    return {center.x() - side / 2, center.y() - side / 2, side, side};
}

QRect TimerRingView::arcBounds(double from, double to) const
{
    if (std::min(from, to) <= 0.0 || std::abs(to - from) > 0.1) {
        return rect();
    }
    const QRectF ring = circle();
    const auto point = [&](double progress) {
        const double angle = progress * 2 * std::numbers::pi - std::numbers::pi / 2;
        return ring.center() + QPointF(std::cos(angle), std::sin(angle)) * (ring.width() / 2);
    };
    const double reach = m_metrics.lineWidth / 2 + 2.0;
    QRectF bounds = QRectF(point(from), QSizeF(0, 0)).united(QRectF(point((from + to) / 2), QSizeF(1, 1)));
    bounds = bounds.united(QRectF(point(to), QSizeF(1, 1)));
    return bounds.adjusted(-reach, -reach, reach, reach).toAlignedRect();
}

void TimerRingView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    paint(painter, event->rect());
}

void TimerRingView::paint(QPainter& painter, const QRect& part) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme theme = Theme::of(*this);
    const ThemeColor color = phaseColor(m_phase);

    // What lies inside the ring changes every second; the ring itself need not be drawn for that.
    const double inner = (circle().width() - m_metrics.lineWidth) / std::numbers::sqrt2 - 2;
    QRectF inside(0, 0, inner, inner);
    inside.moveCenter(QRectF(rect()).center());
    if (!inside.contains(part)) {
        const QColor track = theme.color(color, 0.12);
        QPen pen(m_backdrop ? paintedOver(track, theme.color(*m_backdrop)) : track, m_metrics.lineWidth);
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        painter.drawEllipse(circle());
        if (m_paintedProgress > 0.0) {
            pen.setColor(theme.color(color));
            pen.setCapStyle(Qt::RoundCap);
            pen.setJoinStyle(Qt::MiterJoin);
            painter.setPen(pen);
            constexpr double fullTurn = 360.0 * 16;
            painter.drawArc(circle(), 90 * 16, -static_cast<int>(std::round(m_paintedProgress * fullTurn)));
        }
    }
    if (part.intersects(m_iconRect.toAlignedRect())) {
        paintPhaseIcon(painter, m_iconRect, m_phase, theme);
    }
    if (!m_endText.isEmpty() && part.intersects(m_endTextRect.toAlignedRect())) {
        painter.setFont(endTextFont(m_metrics.diameter));
        painter.setPen(theme.color(ThemeColor::secondaryLabel));
        const double lineHeight = m_endTextRect.height() / static_cast<double>(m_endLines.size());
        QRectF line(m_endTextRect.topLeft(), QSizeF(m_endTextRect.width(), lineHeight));
        for (const QString& text : m_endLines) {
            drawTextOnBaseline(painter, line, Qt::AlignHCenter, text);
            line.translate(0, lineHeight);
        }
    }
}

} // namespace brevlin
