#pragma once

#include "app/history_transfer.h"
#include "ui/controls/alert_dialog.h"

#include <memory>
#include <optional>

class QTimer;

namespace brevlin {

class AppModel;
class ItemList;
class ProgressBar;

/// Reads a file, tells what it would bring, and takes that into the history where the user says so.
class ImportDialog final : public AlertDialog
{
    Q_OBJECT

public:
    /// Begins to read; the path is absolute.
    ImportDialog(AppModel& model, const QString& path, QWidget* parent);
    ~ImportDialog() override;

private:
    void takePlan(HistoryTransfer::Plan plan);
    void translate();
    void listUnreadable();
    QString detail() const;

    AppModel& m_model;
    QString m_name;
    std::shared_ptr<HistoryTransfer::Reading> m_reading;
    std::optional<HistoryTransfer::Plan> m_plan; // none while the file is being read
    ProgressBar* m_progress;                     // these are owned by this widget
    ItemList* m_unreadable = nullptr;
    QTimer* m_timer;
    CapsuleButton* m_cancel;
    CapsuleButton* m_import;
};

} // namespace brevlin
