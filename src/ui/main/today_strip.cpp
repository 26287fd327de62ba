#include "ui/main/today_strip.h"

#include "app/app_model.h"
#include "core/statistics_calculator.h"
#include "ui/main/metric_view.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QHBoxLayout>
#include <QPainter>

#include <cmath>

namespace brevlin {

namespace {

constexpr int leastHeight = 86;
constexpr double ruleHeight = 46.0;

QString number(std::int64_t value, const BilingualText& unit, AppLanguage language)
{
    return QString::number(value) + qtText(unit.in(language));
}

} // namespace

TodayStrip::TodayStrip(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_metrics{new MetricView(Symbol::timer, this), new MetricView(Symbol::checkmarkCircle, this),
                new MetricView(Symbol::flame, this), new MetricView(Symbol::chartLineUptrendXyaxis, this)}
{
    setMinimumHeight(leastHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (MetricView* metric : m_metrics) {
        row->addWidget(metric, 1);
    }
    connect(&model, &AppModel::sessionsChanged, this, &TodayStrip::refresh);
    connect(&model, &AppModel::preferencesChanged, this, &TodayStrip::refresh);
    connect(&model, &AppModel::ticked, this, &TodayStrip::refreshOnNewDay);
    refresh();
}

void TodayStrip::refreshOnNewDay()
{
    if (isVisible() && m_model.calendar().localDay(m_model.now()) != m_shownDay) {
        refresh();
    }
}

void TodayStrip::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

void TodayStrip::refresh()
{
    m_shownDay = m_model.calendar().localDay(m_model.now());
    const StatisticsSummary summary = m_model.statistics();
    const std::int64_t completedToday =
        summary.lastSevenDays.empty() ? 0 : summary.lastSevenDays.back().completedPomodoros;
    const AppLanguage language = m_model.language();
    const auto show = [&](std::size_t metric, const BilingualText& title, const QString& figure) {
        // What is not known is no 0.
        m_metrics.at(metric)->setTexts(qtText(title.in(language)),
                                       m_model.isHistoryAwaited() ? QString() : figure);
    };
    show(0, {"今日专注", "Focus today"}, number(summary.todayFocusMinutes, {" 分钟", " min"}, language));
    show(1, {"完成番茄", "Completed"}, number(completedToday, {" 个", ""}, language));
    show(2, {"连续天数", "Current streak"}, number(summary.currentStreak, {" 天", " days"}, language));
    show(3, {"完成率", "Completion rate"},
         QString::number(std::llround(summary.completionRate * 100)) + QLatin1Char('%'));
}

void TodayStrip::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QColor color = Theme::of(*this).color(ThemeColor::separator);
    for (std::size_t index = 1; index < m_metrics.size(); ++index) {
        const QRectF rule(m_metrics[index]->x(), (height() - ruleHeight) / 2, 1, ruleHeight);
        paintHairline(painter, rule, Qt::LeftEdge, color);
    }
}

} // namespace brevlin
