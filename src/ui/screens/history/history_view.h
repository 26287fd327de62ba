#pragma once

#include "core/time_zone_rules.h"
#include "core/uuid.h"

#include <QWidget>

#include <optional>

namespace brevlin {

class AppModel;
class CapsuleButton;
class EmptyStateView;
class HistoryList;
class TextField;

/// The history section: a field to look for records and a button to add one above every record by day, or
/// what to expect here while there is none.
class HistoryView final : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryView(AppModel& model, QWidget* parent = nullptr);

    /// As if the user had typed it into the field.
    void setFilter(const QString& text);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void applyFilter();
    void openDialog(const std::optional<Uuid>& record);

    AppModel& m_model;
    TextField* m_search; // these are owned by this widget
    CapsuleButton* m_add;
    HistoryList* m_list;
    EmptyStateView* m_emptyState;
    TimeZone m_timeZone; // that the list was made for
};

} // namespace brevlin
