#pragma once

#include "core/timer_settings.h"
#include "ui/controls/form.h"

#include <QPointer>

#include <functional>
#include <vector>

namespace brevlin {

class AppModel;
class CapsuleButton;
class ClearHistoryDialog;
class ExportDialog;
class HooksDialog;
class LaunchAtLogin;
class LinkButton;
class NumberStepper;
class PhaseAnnouncer;
class RestoreDialog;
class SegmentedPicker;
class SwitchControl;

/// The sections of the settings form. Each shows the model's values whenever they change and hands every
/// choice to the model at once; it keeps none of its own.
class TimerSection final : public FormSection
{
    Q_OBJECT

public:
    explicit TimerSection(AppModel& model, QWidget* parent = nullptr);

private:
    void refresh();

    AppModel& m_model;
    std::vector<NumberStepper*>
        m_durations; // in the order of the phases; owned by their rows, as all controls
    NumberStepper* m_longBreakInterval;
    FormRow* m_autoStartBreaksRow;
    FormRow* m_autoStartFocusRow;
    SwitchControl* m_autoStartBreaks;
    SwitchControl* m_autoStartFocus;
    FormRow* m_absencesRow;
    SwitchControl* m_absences;
    FormNote* m_absencesNote;
};

class AlertSection final : public FormSection
{
    Q_OBJECT

public:
    AlertSection(AppModel& model, PhaseAnnouncer& announcer, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void refresh();
    void refreshStatus();
    void refreshQuiet();

    AppModel& m_model;
    PhaseAnnouncer& m_announcer;
    FormRow* m_intensityRow;
    SegmentedPicker* m_intensity;
    FormNote* m_intensityDetail;
    FormRow* m_soundRow;
    SwitchControl* m_sound;
    FormNote* m_weakened;
    FormNote* m_muteNote;
    FormRow* m_statusRow;
    LinkButton* m_enable;
    FormRow* m_quietRow;
    SwitchControl* m_quiet;
    FormNote* m_quietNote;
};

class AppearanceSection final : public FormSection
{
    Q_OBJECT

public:
    AppearanceSection(AppModel& model, LaunchAtLogin& launchAtLogin, QWidget* parent = nullptr);

private:
    void addPickers();
    void addSwitches();
    void addPlace();
    void refresh();
    void refreshPlace();

    AppModel& m_model;
    LaunchAtLogin& m_launchAtLogin;
    FormRow* m_languageRow;
    SegmentedPicker* m_language;
    FormNote* m_languageNote;
    FormRow* m_appearanceRow;
    SegmentedPicker* m_appearance;
    FormNote* m_appearanceNote;
    FormRow* m_capsuleRow;
    SwitchControl* m_capsule;
    FormNote* m_capsuleNote;
    FormRow* m_acrossRow;
    NumberStepper* m_across;
    FormRow* m_downRow;
    NumberStepper* m_down;
    FormNote* m_placeNote;
    FormRow* m_launchRow;
    SwitchControl* m_launch;
    FormRow* m_approvalRow;
    FormNote* m_approvalNote;
    LinkButton* m_openSettings;
};

class HooksSection final : public FormSection
{
    Q_OBJECT

public:
    explicit HooksSection(AppModel& model, QWidget* parent = nullptr);

private:
    void refresh();

    AppModel& m_model;
    CapsuleButton* m_runs;
    FormNote* m_note;
    FormNote* m_failure;
    QPointer<HooksDialog> m_dialog;
};

class ResetSection final : public FormSection
{
    Q_OBJECT

public:
    explicit ResetSection(AppModel& model, QWidget* parent = nullptr);

private:
    void refresh();

    AppModel& m_model;
    CapsuleButton* m_restore;
    FormNote* m_note;
};

class DataSection final : public FormSection
{
    Q_OBJECT

public:
    explicit DataSection(AppModel& model, QWidget* parent = nullptr);

private:
    void refresh();
    void addTransferRow();
    void chooseImport();
    /// In front of the window, unless it is there already.
    template <typename Dialog>
    void open(QPointer<Dialog>& dialog);

    AppModel& m_model;
    FormRow* m_storageRow;
    FormLabel* m_storage;
    FormRow* m_recordsRow;
    FormLabel* m_records;
    CapsuleButton* m_export;
    CapsuleButton* m_import;
    CapsuleButton* m_restore;
    FormNote* m_note;
    CapsuleButton* m_clear;
    QPointer<ClearHistoryDialog> m_confirmation;
    QPointer<ExportDialog> m_exportDialog;
    QPointer<RestoreDialog> m_restoreDialog;
};

} // namespace brevlin
