#pragma once

#include "storage/history_backups.h"
#include "ui/controls/alert_dialog.h"

#include <optional>

namespace brevlin {

class AppModel;
class ItemList;

/// Lists the copies of the history by day and makes the history again what it was on the chosen one.
class RestoreDialog final : public AlertDialog
{
    Q_OBJECT

public:
    RestoreDialog(AppModel& model, QWidget* parent);

private:
    void takeList(const HistoryBackups::List& list);
    void translate();
    void refresh();
    void restore();
    QString detail() const;
    std::optional<LocalDay> chosenDay() const;

    AppModel& m_model;
    std::optional<HistoryBackups::List> m_list; // none while it is being made
    std::optional<DocumentError> m_error;       // of the chosen copy
    ItemList* m_days;                           // these are owned by this widget
    CapsuleButton* m_cancel;
    CapsuleButton* m_restore;
};

} // namespace brevlin
