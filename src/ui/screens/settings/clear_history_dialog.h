#pragma once

#include "ui/controls/alert_dialog.h"

namespace brevlin {

class AppModel;

/// Asks before the whole history is cleared. Follows the language and the number of records while it is open;
/// the keyboard begins on Cancel.
class ClearHistoryDialog final : public AlertDialog
{
    Q_OBJECT

public:
    ClearHistoryDialog(AppModel& model, QWidget* parent);

private:
    void refresh();

    AppModel& m_model;
    CapsuleButton* m_clear; // these are owned by this widget
    CapsuleButton* m_cancel;
};

} // namespace brevlin
