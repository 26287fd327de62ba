#pragma once

#include "core/session_correction.h"
#include "ui/controls/alert_dialog.h"

#include <optional>

class QGridLayout;

namespace brevlin {

class AppModel;
class ChoiceButton;
class FormLabel;
class MomentField;
class SegmentedPicker;
class SwitchControl;
class TextField;

/// Corrects a record or adds a forgotten one: what it was, when, how it ended and what for. Says while it is
/// being typed what counts as done, what cannot be and what overlaps.
class SessionDialog final : public AlertDialog
{
    Q_OBJECT

public:
    /// For a new record, one that ended just now, where no identifier is given.
    SessionDialog(AppModel& model, const std::optional<Uuid>& record, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void layOut();
    FormLabel* addRow(QGridLayout& grid, const BilingualText& title, QWidget* control);
    void addAbsences(QGridLayout& grid);
    void translate();
    /// What stands in the fields.
    SessionCorrection correction() const;
    Instant instantOf(const MomentField& field, Instant before) const;
    void refresh();
    QString effectiveText(const SessionCorrection& correction) const;
    QString noteText(const SessionCorrection& correction) const;
    void save();

    AppModel& m_model;
    std::optional<SessionRecord> m_record; // none for a new one
    SessionDetails m_details;
    SessionCorrection m_before;
    SegmentedPicker* m_phase; // these are owned by this widget
    ChoiceButton* m_outcome;
    MomentField* m_start;
    MomentField* m_end;
    TextField* m_intention;
    QWidget* m_everywhereRow = nullptr;
    FormLabel* m_everywhereText = nullptr;
    SwitchControl* m_everywhere = nullptr;
    FormLabel* m_effective;
    FormLabel* m_recorded = nullptr;
    FormLabel* m_note;
    CapsuleButton* m_cancel;
    CapsuleButton* m_save;
};

} // namespace brevlin
