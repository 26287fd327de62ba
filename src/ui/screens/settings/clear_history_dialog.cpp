#include "ui/screens/settings/clear_history_dialog.h"

#include "app/app_model.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"

namespace brevlin {

namespace {

constexpr BilingualText titleText{"确认清空全部记录？", "Clear all history?"};
constexpr BilingualText messageText{"此操作不可撤销，不会影响当前正在进行的计时。",
                                    "This cannot be undone and will not affect the current timer."};
constexpr BilingualText clearText{"清空全部历史记录", "Clear all history"};
constexpr BilingualText cancelText{"取消", "Cancel"};

} // namespace

ClearHistoryDialog::ClearHistoryDialog(AppModel& model, QWidget* parent)
    : AlertDialog(parent)
    , m_model(model)
    , m_clear(addButton(CapsuleStyle::destructive))
    , m_cancel(addButton(CapsuleStyle::secondary))
{
    connect(m_cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_clear, &QAbstractButton::clicked, this, [this] {
        accept();
        m_model.clearHistory();
    });
    connect(&model, &AppModel::preferencesChanged, this, &ClearHistoryDialog::refresh);
    connect(&model, &AppModel::sessionsChanged, this, &ClearHistoryDialog::refresh);
    refresh();
    m_cancel->setFocus(Qt::TabFocusReason);
}

void ClearHistoryDialog::refresh()
{
    const AppLanguage language = m_model.language();
    setTitle(qtText(titleText.in(language)));
    setDetail(recordsToBeDeleted(m_model.sessions().size(), language) +
              QLatin1String(language == AppLanguage::english ? " " : "") + qtText(messageText.in(language)));
    m_clear->setText(qtText(clearText.in(language)));
    m_cancel->setText(qtText(cancelText.in(language)));
    fit();
}

} // namespace brevlin
