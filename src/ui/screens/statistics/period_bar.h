#pragma once

#include "core/language.h"
#include "core/statistics_calculator.h"

#include <QString>
#include <QWidget>

namespace brevlin {

class SymbolButton;
class FormLabel;
class LinkButton;
class NumericText;
class SegmentedPicker;

/// Names the period that is shown, and leads to others.
class PeriodBar final : public QWidget
{
    Q_OBJECT

public:
    explicit PeriodBar(QWidget* parent = nullptr);

    void show(StatisticsGranularity granularity, const QString& title, AppLanguage language);
    using QWidget::show;
    /// What begins later than now is not to be seen.
    void setPlaceInTime(bool containsNow, bool mayMoveOn);

Q_SIGNALS:
    void moveRequested(int periods);
    void todayRequested();
    void granularityChosen(StatisticsGranularity granularity);

private:
    SymbolButton* m_previous; // these are owned by this widget
    NumericText* m_title;
    FormLabel* m_detail;
    SymbolButton* m_next;
    LinkButton* m_today;
    SegmentedPicker* m_picker;
};

} // namespace brevlin
