#include "ui/screens/statistics/statistics_view.h"

#include "app/app_model.h"
#include "ui/controls/scroll_view.h"
#include "ui/screens/statistics/activity_card.h"
#include "ui/screens/statistics/breakdown_card.h"
#include "ui/screens/statistics/period_bar.h"
#include "ui/screens/statistics/statistics_texts.h"
#include "ui/screens/statistics/summary_strip.h"

#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int sidePadding = 28;
constexpr int topPadding = 24;
constexpr int bottomPadding = 32;
constexpr int rowGap = 18;

} // namespace

StatisticsView::StatisticsView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_anchor(model.now())
    , m_language(model.language())
    , m_calendar(statisticsCalendar(model.calendar().timeZone(), m_language))
    , m_bar(new PeriodBar(this))
    , m_strip(new SummaryStrip(this))
    , m_card(new ActivityCard(this))
{
    layOut();
    addKeys();
    connect(m_bar, &PeriodBar::moveRequested, this, &StatisticsView::movePeriod);
    connect(m_bar, &PeriodBar::todayRequested, this, &StatisticsView::showToday);
    connect(m_bar, &PeriodBar::granularityChosen, this, &StatisticsView::setGranularity);
    connect(&model, &AppModel::sessionsChanged, this, [this] {
        m_isStale = true;
        refreshWhereStale();
    });
    connect(&model, &AppModel::preferencesChanged, this, &StatisticsView::refreshWhereStale);
    connect(&model, &AppModel::ticked, this, &StatisticsView::refreshWhereStale);
    refresh();
}

void StatisticsView::layOut()
{
    auto* content = new QWidget;
    m_column = new QVBoxLayout(content);
    m_column->setContentsMargins(sidePadding, topPadding, sidePadding - SlimScrollBar::thickness,
                                 bottomPadding);
    m_column->setSpacing(rowGap);
    m_column->addWidget(m_bar);
    m_column->addWidget(m_strip);
    m_column->addWidget(m_card);
    m_column->addStretch(1);

    auto* scroll = new ScrollView(this);
    scroll->setWidget(content);
    content->setAutoFillBackground(false); // which the scroll area has set
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
}

void StatisticsView::addKeys()
{
    const auto add = [this](Qt::Key key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    add(Qt::Key_Left, [this] { movePeriod(-1); });
    add(Qt::Key_Right, [this] { movePeriod(1); });
    add(Qt::Key_Home, [this] { showToday(); });
    int digit = Qt::Key_1;
    for (const auto& each : RawValues<StatisticsGranularity>::cases) {
        add(static_cast<Qt::Key>(digit++), [this, granularity = each.first] { setGranularity(granularity); });
    }
}

void StatisticsView::movePeriod(int periods)
{
    if (periods > 0 && m_model.now() < m_statistics.interval.end) {
        return;
    }
    m_anchor = m_calendar.adding(row(m_granularity).period, periods, m_anchor);
    showPeriod();
}

void StatisticsView::showToday()
{
    m_anchor = m_model.now();
    if (!m_statistics.interval.contains(m_anchor)) {
        showPeriod();
    }
}

void StatisticsView::setGranularity(StatisticsGranularity granularity)
{
    m_anchor = m_calendar.startOfDay(m_anchor);
    if (granularity != m_granularity) {
        m_granularity = granularity;
        showPeriod();
    }
}

void StatisticsView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refreshWhereStale();
}

// Runs at every tick, so it compares before it computes.
void StatisticsView::refreshWhereStale()
{
    if (!isVisible()) {
        return;
    }
    if (m_isStale || m_language != m_model.language() ||
        m_calendar.timeZone() != m_model.calendar().timeZone() ||
        m_calendar.startOfDay(m_model.now()) != m_startOfToday) {
        refresh();
    }
}

void StatisticsView::refresh()
{
    const TimeZone& zone = m_model.calendar().timeZone();
    if (m_language != m_model.language() || m_calendar.timeZone() != zone) {
        m_language = m_model.language();
        m_calendar = statisticsCalendar(zone, m_language);
    }
    m_startOfToday = m_calendar.startOfDay(m_model.now());
    m_isStale = false;
    computeStreak();
    showPeriod();
}

void StatisticsView::computeStreak()
{
    m_currentStreak = m_model.statistics().currentStreak;
}

void StatisticsView::showPeriod()
{
    m_statistics =
        StatisticsCalculator::calculatePeriod(m_model.sessions(), m_granularity, m_anchor, m_calendar);
    const Instant now = m_model.now();
    m_bar->show(m_granularity, periodTitle(m_statistics, m_calendar), m_language);
    m_bar->setPlaceInTime(m_statistics.interval.contains(now), m_statistics.interval.end <= now);
    m_strip->setVisible(!m_model.isHistoryAwaited());
    m_card->setVisible(!m_model.isHistoryAwaited());
    m_strip->show(m_statistics, m_language);
    m_card->show({m_statistics, m_calendar, m_language, m_startOfToday}, m_currentStreak);
    if (m_breakdown != nullptr) {
        m_breakdown->showLongest();
    }
    // It lies below what is seen first, which does not wait for it.
    if (m_isFirstPeriod) {
        QTimer::singleShot(0, this, &StatisticsView::showBreakdown);
    } else {
        showBreakdown();
    }
    m_isFirstPeriod = false;
}

void StatisticsView::showBreakdown()
{
    const FocusGrouping grouping =
        m_breakdown != nullptr ? m_breakdown->grouping() : FocusGrouping::intention;
    const FocusBreakdown breakdown = focusBreakdown(m_model.sessions(), m_statistics.interval, grouping);
    const bool isShown = breakdown.isNamed && !m_model.isHistoryAwaited();
    if (isShown && m_breakdown == nullptr) {
        makeBreakdown();
    }
    if (m_breakdown != nullptr) {
        m_breakdown->setVisible(isShown);
    }
    if (isShown) {
        m_breakdown->show(breakdown, m_language);
    }
}

void StatisticsView::makeBreakdown()
{
    m_breakdown = new BreakdownCard(this);
    m_column->insertWidget(m_column->indexOf(m_card) + 1, m_breakdown);
    connect(m_breakdown, &BreakdownCard::groupingChosen, this, &StatisticsView::showBreakdown);
    connect(m_breakdown, &BreakdownCard::chosen, this, [this](FocusGrouping grouping, const QString& name) {
        // In the words of the history's search.
        const QString quoted = QLatin1Char('"') + name + QLatin1Char('"');
        Q_EMIT filterRequested(grouping == FocusGrouping::label ? QLatin1Char('#') + quoted : quoted);
    });
}

} // namespace brevlin
