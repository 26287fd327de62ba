#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;

/// The Focus section: today's figures above the timer.
class TimerDashboardView final : public QWidget
{
    Q_OBJECT

public:
    explicit TimerDashboardView(AppModel& model, QWidget* parent = nullptr);
};

} // namespace brevlin
