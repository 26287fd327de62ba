#include "ui/screens/settings/restore_dialog.h"

#include "app/app_model.h"
#include "ui/controls/item_list.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText titleText{"恢复备份", "Restore a Backup"};
constexpr BilingualText listName{"备份", "Backups"};
constexpr BilingualText readingText{"正在查看备份…", "Looking through the backups…"};
constexpr BilingualText noneText{
    "还没有备份。每天写入第一条记录后会自动保存一份。",
    "There is no backup yet. One is made each day once its first record is written."};
constexpr BilingualText explanationText{
    "历史记录将变回所选日期的内容，之后的记录会消失。可以撤销。",
    "The history becomes what it was on the chosen day; later records go. This can be undone."};
constexpr BilingualText unreadText{"无法读取备份。", "The backups cannot be read."};
constexpr BilingualText damagedText{"已损坏", "Damaged"};
constexpr BilingualText cancelText{"取消", "Cancel"};
constexpr BilingualText closeText{"关闭", "Close"};
constexpr BilingualText restoreText{"恢复", "Restore"};

} // namespace

RestoreDialog::RestoreDialog(AppModel& model, QWidget* parent)
    : AlertDialog(parent)
    , m_model(model)
    , m_days(new ItemList(this))
    , m_cancel(addButton(CapsuleStyle::secondary))
    , m_restore(addButton(CapsuleStyle::primary))
{
    setContent(m_days);
    m_days->setChoosable(true);
    connect(m_cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_restore, &QAbstractButton::clicked, this, &RestoreDialog::restore);
    connect(m_days, &QListWidget::itemSelectionChanged, this, &RestoreDialog::refresh);
    connect(m_days, &QListWidget::itemActivated, m_restore, &QAbstractButton::click);
    connect(&model, &AppModel::preferencesChanged, this, &RestoreDialog::translate);
    connect(&model, &AppModel::sessionsChanged, this, &RestoreDialog::refresh);
    translate();
    m_cancel->setFocus(Qt::TabFocusReason);
    model.historyBackups().list([self = QPointer(this)](const HistoryBackups::List& list) {
        if (self != nullptr) {
            self->takeList(list);
        }
    });
}

void RestoreDialog::takeList(const HistoryBackups::List& list)
{
    m_list = list;
    translate();
    if (list && !list->empty()) {
        m_days->setFocus(Qt::TabFocusReason);
    }
    announce(*this, detail());
}

void RestoreDialog::translate()
{
    const AppLanguage language = m_model.language();
    setTitle(qtText(titleText.in(language)));
    m_days->setAccessibleName(qtText(listName.in(language)));
    m_restore->setText(qtText(restoreText.in(language)));
    const int chosen = m_days->currentRow();
    m_days->clear();
    if (m_list && *m_list) {
        const Calendar calendar(m_model.calendar().timeZone(), std::string(localeIdentifier(language)));
        int firstWhole = -1;
        for (const auto& [day, count] : **m_list) {
            constexpr int noon = 12;
            firstWhole = firstWhole < 0 && count ? m_days->count() : firstWhole;
            m_days->addLine(qtText(calendar.text("yMMMMd", calendar.date(day, noon))),
                            count ? recordCount(*count, language) : qtText(damagedText.in(language)),
                            count.has_value());
        }
        m_days->setCurrentRow(chosen >= 0 ? chosen : firstWhole);
    }
    refresh();
}

QString RestoreDialog::detail() const
{
    const AppLanguage language = m_model.language();
    const DocumentError* error = m_error ? &*m_error : m_list && !*m_list ? &m_list->error() : nullptr;
    if (error != nullptr) {
        return transferErrorText({unreadText, error->description}, language);
    }
    return qtText((!m_list ? readingText : (*m_list)->empty() ? noneText : explanationText).in(language));
}

std::optional<LocalDay> RestoreDialog::chosenDay() const
{
    const int row = m_days->currentRow();
    if (!m_list || !*m_list || m_days->selectedItems().isEmpty() || row < 0) {
        return std::nullopt;
    }
    const HistoryBackups::Entry& entry = (*m_list)->at(static_cast<std::size_t>(row));
    return entry.recordCount ? std::optional{entry.day} : std::nullopt;
}

void RestoreDialog::refresh()
{
    const bool hasDays = m_days->count() > 0;
    setDetail(detail());
    m_days->setVisible(hasDays);
    m_restore->setVisible(hasDays);
    m_restore->setEnabled(chosenDay() && !m_model.isHistoryAwaited());
    m_cancel->setText(qtText((hasDays || !m_list ? cancelText : closeText).in(m_model.language())));
    fit();
}

void RestoreDialog::restore()
{
    const auto day = chosenDay();
    if (!day || !m_restore->isEnabled()) {
        return;
    }
    m_restore->setEnabled(false); // once
    m_model.historyBackups().read(*day, [self = QPointer(this)](HistoryBackups::Content content) {
        if (self == nullptr || !self->isVisible()) {
            return; // the user has thought better of it
        }
        if (!content) {
            self->m_error = content.error();
            self->refresh();
            announce(*self, self->detail());
            return;
        }
        AppModel& model = self->m_model;
        self->accept();
        model.historyEditor().restore(std::move(content->records), std::move(content->details));
    });
}

} // namespace brevlin
