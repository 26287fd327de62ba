#pragma once

#include "app/history_transfer.h"
#include "ui/controls/alert_dialog.h"

class QGridLayout;

namespace brevlin {

class AppModel;
class ChoiceButton;
class FormLabel;
class MomentField;
class SegmentedPicker;
class SwitchControl;

/// Asks in which form, of which period and phases the history goes out and into which file, has it written,
/// and says what came of it.
class ExportDialog final : public AlertDialog
{
    Q_OBJECT

public:
    ExportDialog(AppModel& model, QWidget* parent);

    /// Writes what is chosen.
    void exportTo(const QString& path);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Period { all, year, month, fromTo };

    QWidget* addRow(QGridLayout& grid, const BilingualText& title, QWidget* control);
    void translate();
    void refresh();
    ExportChoice choice() const;
    void chooseFile();
    void finish(const QString& path, const Expected<std::size_t, TransferError>& exported);
    QString fileName() const;

    AppModel& m_model;
    QWidget* m_fields; // these are owned by this widget
    ChoiceButton* m_format;
    ChoiceButton* m_period;
    QWidget* m_days;
    MomentField* m_first;
    FormLabel* m_dash;
    MomentField* m_last;
    SegmentedPicker* m_phases;
    QWidget* m_phasesTitle;
    SwitchControl* m_mark;
    QWidget* m_markTitle;
    CapsuleButton* m_cancel;
    CapsuleButton* m_export;
    bool m_isDone = false;
};

} // namespace brevlin
