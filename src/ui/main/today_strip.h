#pragma once

#include "core/calendar.h"

#include <QWidget>

#include <array>

namespace brevlin {

class AppModel;
class MetricView;

/// Four figures about today and the history: focus time, completed phases, streak and completion rate. They
/// follow every record, and the date when midnight passes.
class TodayStrip final : public QWidget
{
    Q_OBJECT

public:
    explicit TodayStrip(AppModel& model, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void refresh();
    void refreshOnNewDay();

    AppModel& m_model;
    std::array<MetricView*, 4> m_metrics; // owned by this widget
    LocalDay m_shownDay;
};

} // namespace brevlin
