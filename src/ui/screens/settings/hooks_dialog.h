#pragma once

#include "ui/controls/alert_dialog.h"

namespace brevlin {

class AppModel;
class ItemList;

/// Lists how the user's programs ended, and shows what the chosen one said.
class HooksDialog final : public AlertDialog
{
    Q_OBJECT

public:
    HooksDialog(AppModel& model, QWidget* parent);

private:
    void refresh();
    void showChosen();

    AppModel& m_model;
    ItemList* m_runs; // these are owned by this widget
    CapsuleButton* m_close;
};

} // namespace brevlin
