#include "ui/main/timer_cycle_indicator.h"

#include "app/app_model.h"
#include "ui/style/spoken_element.h"
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

QSizeF TimerCycleIndicator::contentSize() const
{
    const Metrics& m = metrics(m_compact);
    const auto segments = static_cast<double>(std::min(segmentCount(), mostSegments));
    const QFontMetricsF captionMetrics(captionFont());
    const QFontMetricsF countMetrics(countFont());
    const double width = captionMetrics.horizontalAdvance(caption()) + m.spacing +
                         segments * m.segment.width() + (segments - 1) * m.segmentSpacing + m.spacing +
                         countMetrics.horizontalAdvance(countText());
    return {width, std::max(captionMetrics.height(), countMetrics.height())};
}

QSize TimerCycleIndicator::sizeHint() const
{
    const QSizeF size = contentSize();
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

void TimerCycleIndicator::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme theme = Theme::of(*this);
    const Metrics& m = metrics(m_compact);

    double x = 0.0;
    if (m_alignment & Qt::AlignHCenter) {
        x = (width() - contentSize().width()) / 2;
    } else if (m_alignment & Qt::AlignRight) {
        x = width() - contentSize().width();
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
        const QRectF segment(QPointF(x, std::round((height() - m.segment.height()) / 2)), m.segment);
        painter.setBrush(color);
        painter.drawRoundedRect(segment, m.segment.height() / 2, m.segment.height() / 2);
        x += m.segment.width() + m.segmentSpacing;
    }
    x += m.spacing - m.segmentSpacing;
    drawText(countFont(), countText());
}

} // namespace brevlin
