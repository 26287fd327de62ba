#include "ui/timer/timer_cycle_indicator.h"

#include "app/app_model.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

/// The sizes of one of the two forms; points.
struct Metrics
{
    double spacing;
    double segmentSpacing;
    QSizeF segment;
    double captionSize;
    double countSize;
};

const Metrics& metrics(bool compact)
{
    static const Metrics regular{12, 6, {36, 8}, 15, 14};
    static const Metrics small{7, 4, {23, 5}, 12, 11};
    return compact ? small : regular;
}

// A cycle of more phases than this would not fit; its count still says where it stands.
constexpr std::int64_t mostSegments = 12;
constexpr double leastSegment = 4;
constexpr double leastSpacing = 2;

} // namespace

TimerCycleIndicator::TimerCycleIndicator(AppModel& model, bool compact, Qt::Alignment alignment,
                                         QWidget* parent)
    : QWidget(parent), m_model(model), m_compact(compact), m_alignment(alignment)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    makeSpokenElement(*this, QAccessible::StaticText,
                      [this] { return caption() + QLatin1Char(' ') + countText(); });
    const auto refresh = [this] {
        updateGeometry();
        update();
    };
    connect(&model, &AppModel::snapshotChanged, this, refresh);
    connect(&model, &AppModel::preferencesChanged, this, refresh);
}

QString TimerCycleIndicator::caption() const
{
    return m_model.language() == AppLanguage::english ? QStringLiteral("Pomodoro cycle")
                                                      : QStringLiteral("番茄循环");
}

QString TimerCycleIndicator::countText() const
{
    return QStringLiteral("%1/%2").arg(m_model.cyclePosition()).arg(segmentCount());
}

std::int64_t TimerCycleIndicator::segmentCount() const
{
    return std::max<std::int64_t>(m_model.preferences().timerSettings.focusSessionsPerLongBreak, 1);
}

QFont TimerCycleIndicator::captionFont() const
{
    return systemFont(metrics(m_compact).captionSize, QFont::DemiBold);
}

QFont TimerCycleIndicator::countFont() const
{
    return systemFont(metrics(m_compact).countSize, QFont::DemiBold);
}

double TimerCycleIndicator::textWidth() const
{
    return QFontMetricsF(captionFont()).horizontalAdvance(caption()) + 2 * metrics(m_compact).spacing +
           QFontMetricsF(countFont()).horizontalAdvance(countText());
}

std::pair<double, double> TimerCycleIndicator::segmentsWithin(double width) const
{
    const Metrics& m = metrics(m_compact);
    const auto count = static_cast<double>(std::min(segmentCount(), mostSegments));
    const double needed = count * m.segment.width() + (count - 1) * m.segmentSpacing;
    if (needed <= width) {
        return {m.segment.width(), m.segmentSpacing};
    }
    const double spacing = std::max(leastSpacing, m.segmentSpacing * width / needed);
    return {std::max(leastSegment, (width - (count - 1) * spacing) / count), spacing};
}

QSizeF TimerCycleIndicator::contentSize(double width) const
{
    const auto count = static_cast<double>(std::min(segmentCount(), mostSegments));
    const auto [segment, spacing] = segmentsWithin(width - textWidth());
    const double height =
        std::max(QFontMetricsF(captionFont()).height(), QFontMetricsF(countFont()).height());
    return {textWidth() + count * segment + (count - 1) * spacing, height};
}

QSize TimerCycleIndicator::sizeHint() const
{
    const QSizeF size = contentSize(QWIDGETSIZE_MAX);
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

QSize TimerCycleIndicator::minimumSizeHint() const
{
    const QSizeF size = contentSize(0.0);
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

void TimerCycleIndicator::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme theme = Theme::of(*this);
    const Metrics& m = metrics(m_compact);

    const auto [segmentWidth, segmentSpacing] = segmentsWithin(width() - textWidth());
    const double free = width() - contentSize(width()).width();
    double x = 0.0;
    if (m_alignment & Qt::AlignHCenter) {
        x = free / 2;
    } else if (m_alignment & Qt::AlignRight) {
        x = free;
    }
    const auto drawText = [&](const QFont& font, const QString& text) {
        const double advance = QFontMetricsF(font).horizontalAdvance(text);
        painter.setFont(font);
        painter.setPen(theme.color(ThemeColor::secondaryLabel));
        drawTextOnBaseline(painter, QRectF(x, 0, advance, height()), Qt::AlignLeft, text);
        x += advance;
    };

    drawText(captionFont(), caption());
    x += m.spacing;
    painter.setPen(Qt::NoPen);
    const std::int64_t position = m_model.cyclePosition();
    for (std::int64_t index = 1; index <= std::min(segmentCount(), mostSegments); ++index) {
        QColor color = theme.color(ThemeColor::secondaryLabel, 0.16);
        if (index < position) {
            color = theme.color(ThemeColor::focus);
        } else if (index == position) {
            color = theme.color(phaseColor(m_model.snapshot().phase));
        }
        const QRectF segment(x, std::round((height() - m.segment.height()) / 2), segmentWidth,
                             m.segment.height());
        painter.setBrush(color);
        painter.drawRoundedRect(segment, m.segment.height() / 2, m.segment.height() / 2);
        x += segmentWidth + segmentSpacing;
    }
    x += m.spacing - segmentSpacing;
    drawText(countFont(), countText());
}

} // namespace brevlin
