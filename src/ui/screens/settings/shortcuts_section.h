#pragma once

#include "ui/controls/form.h"
#include "ui/controls/key_recorder.h"

#include <QPointer>

#include <array>
#include <optional>

namespace brevlin {

class AppModel;
class CapsuleButton;
class LinkButton;
class Shortcuts;
class SymbolButton;

/// The keys that are heard everywhere, as the desktop offers them: recorded here, chosen in the desktop's own
/// dialog, or as commands to be bound in its settings.
class ShortcutsSection final : public FormSection
{
    Q_OBJECT

public:
    explicit ShortcutsSection(AppModel& model, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Row
    {
        FormRow* row; // owned by the section, as are the others by their row
        KeyRecorder* recorder;
        SymbolButton* clear;
        FormLabel* value;
        LinkButton* copy;
        FormNote* trouble;
        QString refusal{}; ///< why the last key was not taken
    };

    Row makeRow(ShortcutAction action);
    void connectRow(ShortcutAction action);
    void addFoot();
    void take(ShortcutAction action, const KeyCombination& key);
    void refuse(ShortcutAction action, const QString& reason);
    void refresh();
    void refreshRow(ShortcutAction action);
    void refreshFoot();
    QString troubleOf(ShortcutAction action) const;

    AppModel& m_model;
    Shortcuts& m_shortcuts;
    ForEachShortcut<Row> m_rows;
    FormNote* m_note;
    FormRow* m_foot;
    CapsuleButton* m_dialog;
    FormNote* m_dialogNote;
    FormNote* m_dialogTrouble;
    std::optional<ShortcutAction> m_copied;
};

} // namespace brevlin
