#include "ui/screens/settings/shortcuts_section.h"

#include "app/app_model.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/link_button.h"
#include "ui/controls/spoken_element.h"
#include "ui/controls/symbol_button.h"
#include "ui/style/text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>

namespace brevlin {

namespace {

using Offer = GlobalShortcuts::Offer;
using Trouble = GlobalShortcuts::Trouble;

constexpr int controlSpacing = 4;

constexpr BilingualText headingText{"全局快捷键", "Global shortcuts"};
constexpr BilingualText noneText{"无", "None"};
constexpr BilingualText promptText{"请按组合键…", "Press keys…"};
constexpr BilingualText clearText{"清除", "Clear"};
constexpr BilingualText copyText{"复制", "Copy"};
constexpr BilingualText copiedText{"已复制", "Copied"};
constexpr BilingualText setUpText{"设置…", "Set up…"};
constexpr BilingualText changeText{"更改…", "Change…"};
constexpr BilingualText separatorText{"：", ": "};
constexpr BilingualText keysNoteText{
    "对所有程序有效。录制时 Esc 取消，退格键清除；字母和数字须配合 Ctrl、Alt 或 Super。",
    "They work in every program. While recording, Escape cancels and Backspace clears; letters and digits "
    "need Ctrl, Alt or Super."};
constexpr BilingualText commandsNoteText{
    "此桌面不让程序接收全局按键。请在它的设置中把按键绑定到这些命令，例如 sway：bindsym $mod+p exec brevlin "
    "toggle",
    "This desktop lets no program hear keys everywhere. Bind keys to these commands in its settings; in "
    "sway: bindsym $mod+p exec brevlin toggle"};
constexpr BilingualText dialogNoteText{
    "由桌面自己的对话框设定，之后也可在它的键盘设置中更改。",
    "Chosen in the desktop's own dialog, and later in its keyboard settings, too."};
constexpr BilingualText dialogFailedText{"桌面没有打开对话框。", "The desktop did not open its dialog."};
constexpr BilingualText takenText{"另一个程序已占用此组合键。", "Another program has this key."};
constexpr BilingualText absentText{"此键盘上没有这个键。", "This keyboard lacks the key."};
constexpr BilingualText needsModifierText{"请与 Ctrl、Alt 或 Super 同按。",
                                          "Hold Ctrl, Alt or Super with it."};
constexpr BilingualText unknownKeyText{"此键无法使用。", "This key cannot be used."};

QString usedText(ShortcutAction other, AppLanguage language)
{
    const QString name = qtText(title(other, language));
    return language == AppLanguage::english ? QStringLiteral("It is used for “%1” already.").arg(name)
                                            : QStringLiteral("已用于“%1”。").arg(name);
}

} // namespace

ShortcutsSection::ShortcutsSection(AppModel& model, QWidget* parent)
    : FormSection(parent), m_model(model), m_shortcuts(model.shortcuts())
{
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        m_rows[action] = makeRow(action);
        connectRow(action);
    }
    m_note = m_rows[ShortcutAction::silence].row->addNote();
    addFoot();
    connect(&m_shortcuts, &Shortcuts::changed, this, &ShortcutsSection::refresh);
    connect(&model, &AppModel::preferencesChanged, this, &ShortcutsSection::refresh);
    refresh();
}

ShortcutsSection::Row ShortcutsSection::makeRow(ShortcutAction /*action*/)
{
    auto* controls = new QWidget;
    auto* line = new QHBoxLayout(controls);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(controlSpacing);
    const auto keyAt = [this](std::uint32_t scanCode) {
        return m_shortcuts.desktop().keyAt(scanCode);
    };
    Row made{addRow(),
             new KeyRecorder(keyAt),
             new SymbolButton(Symbol::xmark),
             new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel),
             new LinkButton,
             nullptr};
    for (QWidget* control :
         std::initializer_list<QWidget*>{made.value, made.copy, made.recorder, made.clear}) {
        line->addWidget(control);
    }
    made.row->addControl(controls, LinkButton::bleed);
    made.trouble = made.row->addNote(ThemeColor::orange, Symbol::exclamationmarkTriangleFill);
    return made;
}

void ShortcutsSection::connectRow(ShortcutAction action)
{
    const Row& row = m_rows[action];
    const auto clear = [this, action] {
        m_rows[action].refusal.clear();
        m_model.setShortcut(action, std::nullopt);
        refreshRow(action);
    };
    connect(row.recorder, &KeyRecorder::recorded, this,
            [this, action](const KeyCombination& key) { take(action, key); });
    connect(row.recorder, &KeyRecorder::cleared, this, clear);
    connect(row.recorder, &KeyRecorder::refused, this, [this, action](KeyRecorder::Refusal reason) {
        const bool isLetter = reason == KeyRecorder::Refusal::needsModifier;
        refuse(action, qtText((isLetter ? needsModifierText : unknownKeyText).in(m_model.language())));
    });
    connect(row.recorder, &KeyRecorder::recordingChanged, this, [this, action] {
        m_rows[action].refusal.clear();
        refreshRow(action);
    });
    connect(row.clear, &QAbstractButton::clicked, this, [this, action, clear] {
        m_rows[action].recorder->setFocus(Qt::TabFocusReason); // there is nothing more to clear
        clear();
    });
    connect(row.copy, &QAbstractButton::clicked, this, [this, action] {
        QGuiApplication::clipboard()->setText(qtText(command(action)));
        m_copied = action;
        refresh();
    });
}

void ShortcutsSection::addFoot()
{
    m_foot = addRow();
    m_dialog = new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact);
    m_foot->setContent(m_dialog);
    m_dialogTrouble = m_foot->addNote(ThemeColor::orange, Symbol::exclamationmarkTriangleFill);
    m_dialogNote = m_foot->addNote();
    connect(m_dialog, &QAbstractButton::clicked, this, [this] { m_shortcuts.openDialog(window()->winId()); });
}

void ShortcutsSection::showEvent(QShowEvent* event)
{
    m_shortcuts.look();
    refresh();
    FormSection::showEvent(event);
}

void ShortcutsSection::take(ShortcutAction action, const KeyCombination& key)
{
    if (const auto other = m_shortcuts.otherWith(key, action)) {
        refuse(action, usedText(*other, m_model.language()));
        return;
    }
    m_model.setShortcut(action, key);
    refreshRow(action);
    if (const QString trouble = troubleOf(action); !trouble.isEmpty()) {
        announce(*m_rows[action].recorder, trouble);
    }
}

void ShortcutsSection::refuse(ShortcutAction action, const QString& reason)
{
    m_rows[action].refusal = reason;
    refreshRow(action);
    announce(*m_rows[action].recorder, reason);
}

void ShortcutsSection::refresh()
{
    setHeading(qtText(headingText.in(m_model.language())));
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        refreshRow(action);
    }
    refreshFoot();
}

void ShortcutsSection::refreshRow(ShortcutAction action)
{
    const AppLanguage language = m_model.language();
    const Offer offer = m_shortcuts.offer();
    const Row& row = m_rows[action];
    const QString name = qtText(title(action, language));
    const QString prefix = name + qtText(separatorText.in(language));
    const QString none = qtText(noneText.in(language));
    row.row->setTitle(name);

    row.recorder->setVisible(offer == Offer::keys);
    row.recorder->setTexts({prefix, none, qtText(promptText.in(language))});
    row.recorder->setKey(m_shortcuts.key(action));
    row.clear->setVisible(offer == Offer::keys);
    row.clear->setAccessibleName(qtText(clearText.in(language)) + qtText(separatorText.in(language)) + name);
    row.clear->setToolTip(qtText(clearText.in(language)));
    row.clear->setEnabled(m_shortcuts.key(action).has_value());

    const QString trigger =
        offer == Offer::dialog ? qtText(m_shortcuts.desktop().trigger(action)) : QString();
    const QString value = offer == Offer::commands ? qtText(command(action))
                          : trigger.isEmpty()      ? none
                                                   : trigger;
    row.value->setVisible(offer != Offer::keys);
    row.value->setText(value);
    row.value->setAccessibleName(prefix + value);
    const QString copy = qtText((m_copied == action ? copiedText : copyText).in(language));
    row.copy->setVisible(offer == Offer::commands);
    row.copy->setText(copy);
    row.copy->setAccessibleName(copy + qtText(separatorText.in(language)) + value);
    row.copy->updateGeometry();

    // A text alone ends where the others seem to.
    row.value->parentWidget()->layout()->setContentsMargins(
        0, 0, offer == Offer::dialog ? LinkButton::bleed : 0, 0);

    const QString trouble = troubleOf(action);
    row.trouble->setText(trouble);
    row.trouble->setVisible(!trouble.isEmpty());
}

void ShortcutsSection::refreshFoot()
{
    const AppLanguage language = m_model.language();
    const Offer offer = m_shortcuts.offer();
    m_note->setVisible(offer != Offer::dialog);
    m_note->setText(qtText((offer == Offer::commands ? commandsNoteText : keysNoteText).in(language)));
    m_foot->setVisible(offer == Offer::dialog);
    m_dialog->setText(qtText((m_shortcuts.hasBound() ? changeText : setUpText).in(language)));
    m_dialog->updateGeometry();
    m_dialogNote->setText(qtText(dialogNoteText.in(language)));
    m_dialogTrouble->setText(qtText(dialogFailedText.in(language)));
    const bool isDialog = offer == Offer::dialog;
    m_dialog->setEnabled(isDialog && !m_shortcuts.desktop().isDialogOpen());
    m_dialogTrouble->setVisible(isDialog && m_shortcuts.desktop().hasDialogFailed());
}

QString ShortcutsSection::troubleOf(ShortcutAction action) const
{
    const Row& row = m_rows[action];
    if (m_shortcuts.offer() != Offer::keys) {
        return {};
    }
    if (!row.refusal.isEmpty() || row.recorder->isRecording()) {
        return row.refusal;
    }
    switch (m_shortcuts.desktop().trouble(action)) {
    case Trouble::taken:
        return qtText(takenText.in(m_model.language()));
    case Trouble::absent:
        return qtText(absentText.in(m_model.language()));
    case Trouble::none:
        break;
    }
    return {};
}

} // namespace brevlin
