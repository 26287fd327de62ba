#include "app/app_model.h"
#include "ui/controls/capsule_button.h"
#include "ui/screens/settings/clear_history_dialog.h"
#include "ui/screens/settings/export_dialog.h"
#include "ui/screens/settings/file_choice.h"
#include "ui/screens/settings/import_dialog.h"
#include "ui/screens/settings/restore_dialog.h"
#include "ui/screens/settings/settings_sections.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QHBoxLayout>

namespace brevlin {

namespace {

constexpr int buttonSpacing = 8;

constexpr BilingualText resetHeadingText{"恢复", "Reset"};
constexpr BilingualText restoreText{"恢复预设设置", "Restore defaults"};
constexpr BilingualText restoreNoteText{
    "恢复计时、提醒和顶部计时器设置；不会删除记录，也不会更改通知权限或登录启动状态。",
    "Restores timer, alert, and top timer settings without deleting history or changing system permissions."};
constexpr BilingualText dataHeadingText{"数据", "Data"};
constexpr BilingualText storageText{"存储方式", "Storage"};
constexpr BilingualText storageValueText{"仅本机", "On this computer"};
constexpr BilingualText recordsText{"记录数量", "Records"};
constexpr BilingualText exportText{"导出…", "Export…"};
constexpr BilingualText importText{"导入…", "Import…"};
constexpr BilingualText restoreBackupText{"恢复备份…", "Restore…"};
constexpr BilingualText backupNoteText{
    "每天自动备份一次；也可以把文件拖到主窗口导入。",
    "A backup is made each day. A file can also be dropped on the main window."};
constexpr BilingualText clearText{"清空全部历史记录", "Clear all history"};

} // namespace

ResetSection::ResetSection(AppModel& model, QWidget* parent)
    : FormSection(parent)
    , m_model(model)
    , m_restore(new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact))
{
    FormRow* row = addRow();
    m_restore->setSymbol(Symbol::arrowCounterclockwise);
    row->setContent(m_restore);
    m_note = row->addNote();
    connect(m_restore, &QAbstractButton::clicked, &model, &AppModel::restoreDefaultPreferences);
    connect(&model, &AppModel::preferencesChanged, this, &ResetSection::refresh);
    refresh();
}

void ResetSection::refresh()
{
    const AppLanguage language = m_model.language();
    setHeading(qtText(resetHeadingText.in(language)));
    m_restore->setText(qtText(restoreText.in(language)));
    m_restore->updateGeometry();
    m_note->setText(qtText(restoreNoteText.in(language)));
}

DataSection::DataSection(AppModel& model, QWidget* parent)
    : FormSection(parent)
    , m_model(model)
    , m_storageRow(addRow())
    , m_storage(new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel))
    , m_recordsRow(addRow())
    , m_records(new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel))
    , m_clear(new CapsuleButton(CapsuleStyle::destructive, ControlSize::compact))
{
    m_storageRow->addControl(m_storage);
    m_recordsRow->addControl(m_records);
    m_records->setFocusPolicy(Qt::ClickFocus);
    addTransferRow();
    addRow()->setContent(m_clear);
    connect(m_clear, &QAbstractButton::clicked, this, [this] { open(m_confirmation); });
    connect(&model, &AppModel::preferencesChanged, this, &DataSection::refresh);
    connect(&model, &AppModel::sessionsChanged, this, &DataSection::refresh);
    refresh();
}

void DataSection::addTransferRow()
{
    auto* buttons = new QWidget;
    auto* line = new QHBoxLayout(buttons);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(buttonSpacing);
    for (CapsuleButton** button : {&m_export, &m_import, &m_restore}) {
        *button = new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact, buttons);
        line->addWidget(*button);
    }
    FormRow* row = addRow();
    row->setContent(buttons);
    m_note = row->addNote();
    connect(m_export, &QAbstractButton::clicked, this, [this] { open(m_exportDialog); });
    connect(m_import, &QAbstractButton::clicked, this, &DataSection::chooseImport);
    connect(m_restore, &QAbstractButton::clicked, this, [this] { open(m_restoreDialog); });
}

void DataSection::chooseImport()
{
    chooseFileToRead(*this, m_model.language(), [this](const QString& path) {
        auto* dialog = new ImportDialog(m_model, path, window());
        dialog->show();
    });
}

void DataSection::refresh()
{
    const AppLanguage language = m_model.language();
    const auto show = [language](FormRow* row, FormLabel* value, const BilingualText& title,
                                 const QString& text) {
        const QString name = qtText(title.in(language));
        row->setTitle(name);
        value->setText(text);
        value->setAccessibleName(
            name + (language == AppLanguage::english ? QStringLiteral(": ") : QStringLiteral("：")) + text);
    };
    setHeading(qtText(dataHeadingText.in(language)));
    show(m_storageRow, m_storage, storageText, qtText(storageValueText.in(language)));
    show(m_recordsRow, m_records, recordsText,
         m_model.isHistoryAwaited() ? QString() : QString::number(m_model.sessions().size()));
    const auto name = [language](CapsuleButton* button, const BilingualText& text) {
        button->setText(qtText(text.in(language)));
        button->updateGeometry();
    };
    name(m_export, exportText);
    name(m_import, importText);
    name(m_restore, restoreBackupText);
    name(m_clear, clearText);
    m_note->setText(qtText(backupNoteText.in(language)));
    const bool isEmpty = m_model.sessions().empty();
    m_export->setEnabled(!isEmpty);
    m_import->setEnabled(!m_model.isHistoryAwaited());
    if (isEmpty && window()->focusWidget() == m_clear) {
        m_records->setFocus(); // which says what the button has done
    }
    m_clear->setEnabled(!isEmpty);
}

template <typename Dialog>
void DataSection::open(QPointer<Dialog>& dialog)
{
    if (!dialog) {
        dialog = new Dialog(m_model, window());
    }
    dialog->show();
}

} // namespace brevlin
