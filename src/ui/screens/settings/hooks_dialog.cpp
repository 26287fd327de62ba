#include "ui/screens/settings/hooks_dialog.h"

#include "app/app_model.h"
#include "ui/controls/item_list.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/settings/hook_texts.h"
#include "ui/style/text.h"

#include <algorithm>

namespace brevlin {

namespace {

constexpr int contentWidth = 460;
constexpr BilingualText titleText{"最近运行", "Recent Runs"};
constexpr BilingualText noneText{"本次启动后还没有程序运行过。",
                                 "Nothing has run since Brevlin was started."};
constexpr BilingualText closeText{"关闭", "Close"};

} // namespace

HooksDialog::HooksDialog(AppModel& model, QWidget* parent)
    : AlertDialog(parent)
    , m_model(model)
    , m_runs(new ItemList(this))
    , m_close(addButton(CapsuleStyle::primary))
{
    setContentWidth(contentWidth);
    setContent(m_runs);
    m_runs->setChoosable(true);
    connect(m_close, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_runs, &QListWidget::itemSelectionChanged, this, &HooksDialog::showChosen);
    connect(&model, &AppModel::preferencesChanged, this, &HooksDialog::refresh);
    connect(&model.hooks(), &HookCaller::recordsChanged, this, &HooksDialog::refresh);
    refresh();
    m_close->setFocus(Qt::TabFocusReason);
}

void HooksDialog::refresh()
{
    const AppLanguage language = m_model.language();
    setTitle(qtText(titleText.in(language)));
    m_runs->setAccessibleName(qtText(titleText.in(language)));
    m_close->setText(qtText(closeText.in(language)));
    const int chosen = std::max(m_runs->currentRow(), 0);
    m_runs->clear();
    for (const HookRecord& record : m_model.hooks().records()) {
        m_runs->addLine(hookSubject(record, language),
                        hookOutcome(record, language) + QStringLiteral("  ") +
                            qtText(m_model.calendar().shortTimeText(record.at)));
    }
    m_runs->setVisible(m_runs->count() > 0);
    m_runs->setCurrentRow(std::min(chosen, m_runs->count() - 1));
    showChosen();
}

void HooksDialog::showChosen()
{
    const AppLanguage language = m_model.language();
    const auto& records = m_model.hooks().records();
    const int row = m_runs->currentRow();
    if (row < 0 || static_cast<std::size_t>(row) >= records.size()) {
        setDetail(qtText(noneText.in(language)));
    } else {
        setDetail(hookDetail(records[static_cast<std::size_t>(row)], language));
    }
    fit();
}

} // namespace brevlin
