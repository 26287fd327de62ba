#pragma once

#include "core/calendar.h"
#include "core/focus_breakdown.h"
#include "core/language.h"
#include "core/statistics_calculator.h"

#include <QWidget>

#include <cstdint>
#include <string>

class QVBoxLayout;

namespace brevlin {

class ActivityCard;
class AppModel;
class BreakdownCard;
class PeriodBar;
class SummaryStrip;

/// One day, week, month or year of the history; the current week at first. Figures are computed when a
/// record, the period, the date, the time zone or the language changes, and only while the screen can be
/// seen.
class StatisticsView final : public QWidget
{
    Q_OBJECT

public:
    explicit StatisticsView(AppModel& model, QWidget* parent = nullptr);

    const PeriodStatistics& statistics() const { return m_statistics; }
    /// Nothing beyond the present is shown.
    void movePeriod(int periods);
    void showToday();
    void setGranularity(StatisticsGranularity granularity);

Q_SIGNALS:
    /// The user wants to see the phases that the history finds by this text.
    void filterRequested(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void layOut();
    void addKeys();
    void refresh();
    void refreshWhereStale();
    void computeStreak();
    void showPeriod();
    void showBreakdown();
    void makeBreakdown();

    AppModel& m_model;
    StatisticsGranularity m_granularity = StatisticsGranularity::week;
    Instant m_anchor;
    AppLanguage m_language;
    Calendar m_calendar; ///< of the statistics, unlike the model's
    PeriodStatistics m_statistics;
    std::int64_t m_currentStreak = 0;
    Instant m_startOfToday;
    bool m_isFirstPeriod = true;
    bool m_isStale = true;           ///< a record changed while nobody could see it
    QVBoxLayout* m_column = nullptr; // these are owned by this widget
    PeriodBar* m_bar;
    SummaryStrip* m_strip;
    ActivityCard* m_card;
    BreakdownCard* m_breakdown = nullptr; ///< made for the first period that has an intention
};

} // namespace brevlin
