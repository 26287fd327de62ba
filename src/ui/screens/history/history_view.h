#pragma once

#include "core/time_zone_rules.h"

#include <QWidget>

namespace brevlin {

class AppModel;
class EmptyStateView;
class HistoryList;

/// The history section: every record by day, or what to expect here while there is none.
class HistoryView final : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryView(AppModel& model, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();

    AppModel& m_model;
    HistoryList* m_list; // these are owned by this widget
    EmptyStateView* m_emptyState;
    TimeZone m_timeZone; // that the list was made for
};

} // namespace brevlin
