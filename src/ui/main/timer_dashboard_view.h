#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;
class CardSurface;

/// The Focus section: today's figures above the timer.
class TimerDashboardView final : public QWidget
{
    Q_OBJECT

public:
    explicit TimerDashboardView(AppModel& model, QWidget* parent = nullptr);

    /// Today's figures may give way to something else.
    void setShowsToday(bool shows);
    /// The least height with them.
    int wholeHeight();

private:
    CardSurface* m_today; // owned by this widget
    int m_wholeHeight = 0;
};

} // namespace brevlin
