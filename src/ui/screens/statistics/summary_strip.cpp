#include "ui/screens/statistics/summary_strip.h"

#include "ui/controls/numeric_text.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/statistics/granularity_row.h"
#include "ui/screens/statistics/statistics_texts.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QPainter>

#include <cmath>

namespace brevlin {

namespace {

constexpr int leastHeight = 84;
constexpr int padding = 16;
constexpr int lineGap = 8;
constexpr int symbolSize = 14;
constexpr int symbolGap = 5;
constexpr double ruleHeight = 48;
// Real figures shrink to 0.72 at most; only the claims of a damaged record need less.
constexpr double smallestScale = 0.45;

QFont titleFont()
{
    return textFont(TextRole::callout);
}

} // namespace

SummaryMetric::SummaryMetric(Symbol symbol, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_value(new NumericText(textFont(TextRole::title, QFont::DemiBold), this))
{
    m_value->setMinimumScale(smallestScale);
    m_value->setBackdrop(ThemeColor::panelBackground);
    makeSpokenElement(*this, QAccessible::StaticText,
                      [this] { return m_title + QStringLiteral(", ") + m_value->text(); });
}

void SummaryMetric::setTexts(const QString& title, const QString& value)
{
    m_value->setText(value);
    if (title != m_title) {
        m_title = title;
        updateGeometry();
        update();
    }
}

QSize SummaryMetric::minimumSizeHint() const
{
    const int title = static_cast<int>(std::ceil(QFontMetricsF(titleFont()).horizontalAdvance(m_title)));
    return {2 * padding + symbolSize + symbolGap + title,
            titleRect().height() + lineGap + m_value->sizeHint().height()};
}

QRect SummaryMetric::titleRect() const
{
    const int titleHeight = static_cast<int>(std::ceil(QFontMetricsF(titleFont()).height()));
    const int whole = titleHeight + lineGap + m_value->sizeHint().height();
    return {padding, (height() - whole) / 2, width() - 2 * padding, titleHeight};
}

void SummaryMetric::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const QRect title = titleRect();
    m_value->setGeometry(padding, title.y() + title.height() + lineGap, title.width(),
                         m_value->sizeHint().height());
}

void SummaryMetric::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QColor color = Theme::of(*this).color(ThemeColor::secondaryLabel);
    QRectF line = titleRect();
    const QRectF symbol(line.left(), std::round(line.center().y() - symbolSize / 2.0), symbolSize,
                        symbolSize);
    paintSymbol(painter, m_symbol, symbol, color);
    line.setLeft(symbol.right() + symbolGap);
    painter.setFont(titleFont());
    painter.setPen(color);
    drawTextOnBaseline(painter, line, Qt::AlignLeft, m_title);
}

SummaryStrip::SummaryStrip(QWidget* parent)
    : CardSurface(0, parent)
    , m_metrics{new SummaryMetric(Symbol::timer, this), new SummaryMetric(Symbol::checkmarkCircle, this),
                new SummaryMetric(Symbol::calendarBadgeClock, this),
                new SummaryMetric(Symbol::chartLineUptrendXyaxis, this)}
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addStrut(leastHeight);
    for (SummaryMetric* metric : m_metrics) {
        row->addWidget(metric, 1);
    }
}

void SummaryStrip::show(const PeriodStatistics& statistics, AppLanguage language)
{
    setAccessibleName(qtText(BilingualText{"概览", "Summary"}.in(language)));
    const bool isByHour = row(statistics.granularity).bucketSize == FocusTimeBucketSize::hour;
    const auto text = [language](const BilingualText& both) {
        return qtText(both.in(language));
    };
    const auto number = [](std::int64_t value) {
        return QString::number(value);
    };
    m_metrics[0]->setTexts(text(granularityRow(statistics.granularity).metricTitle),
                           focusDurationText(statistics.totalFocusMinutes, language));
    m_metrics[1]->setTexts(text({"完成番茄", "Completed"}),
                           number(statistics.completedPomodoros) + text({" 个", ""}));
    m_metrics[2]->setTexts(isByHour ? text({"活跃小时", "Active hours"}) : text({"专注天数", "Focus days"}),
                           number(statistics.activeUnitCount) +
                               (isByHour ? text({" 小时", " hr"}) : text({" 天", " days"})));
    m_metrics[3]->setTexts(text({"完成率", "Completion rate"}), percentText(statistics.completionRate));
}

void SummaryStrip::paintEvent(QPaintEvent* event)
{
    CardSurface::paintEvent(event);
    QPainter painter(this);
    const QColor color = Theme::of(*this).color(ThemeColor::label, 0.075);
    for (std::size_t index = 1; index < m_metrics.size(); ++index) {
        const QRect metric = m_metrics[index]->geometry();
        const QRectF rule(metric.x(), metric.y() + (metric.height() - ruleHeight) / 2, 1, ruleHeight);
        paintHairline(painter, rule, Qt::LeftEdge, color);
    }
}

} // namespace brevlin
