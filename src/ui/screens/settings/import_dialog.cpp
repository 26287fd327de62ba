#include "ui/screens/settings/import_dialog.h"

#include "app/app_model.h"
#include "ui/controls/item_list.h"
#include "ui/controls/progress_bar.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"

#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr int contentWidth = 460;
constexpr int progressSteps = 1000;
constexpr int progressInterval = 50;  // milliseconds
constexpr std::size_t mostRows = 100; // more than anybody reads

constexpr BilingualText titleText{"导入记录", "Import Records"};
constexpr BilingualText failedTitle{"导入失败", "Import Failed"};
constexpr BilingualText progressName{"读取进度", "Reading progress"};
constexpr BilingualText unreadableName{"无法读取的行", "Unreadable rows"};
constexpr BilingualText nothingText{"没有新记录可以添加。", "There is nothing new to add."};
constexpr BilingualText cancelText{"取消", "Cancel"};
constexpr BilingualText closeText{"关闭", "Close"};
constexpr BilingualText importText{"导入", "Import"};

} // namespace

ImportDialog::ImportDialog(AppModel& model, const QString& path, QWidget* parent)
    : AlertDialog(parent)
    , m_model(model)
    , m_name(QFileInfo(path).fileName())
    , m_progress(new ProgressBar(this))
    , m_timer(new QTimer(this))
    , m_cancel(addButton(CapsuleStyle::secondary))
    , m_import(addButton(CapsuleStyle::primary))
{
    setContentWidth(contentWidth);
    setContent(m_progress);
    m_progress->setMaximum(progressSteps);
    m_import->hide();
    connect(m_cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_import, &QAbstractButton::clicked, this, [this] {
        accept();
        m_model.historyTransfer().adopt(**std::exchange(m_plan, std::nullopt));
    });
    connect(m_timer, &QTimer::timeout, this,
            [this] { m_progress->setValue(static_cast<int>(m_reading->fraction * progressSteps)); });
    connect(&model, &AppModel::preferencesChanged, this, &ImportDialog::translate);
    translate();
    m_cancel->setFocus(Qt::TabFocusReason);
    m_timer->start(progressInterval);
    m_reading = model.historyTransfer().planImport(path.toStdString(),
                                                   [self = QPointer(this)](HistoryTransfer::Plan plan) {
                                                       if (self != nullptr) {
                                                           self->takePlan(std::move(plan));
                                                       }
                                                   });
}

ImportDialog::~ImportDialog()
{
    m_reading->isCancelled = true;
}

void ImportDialog::takePlan(HistoryTransfer::Plan plan)
{
    m_plan = std::move(plan);
    m_timer->stop();
    m_progress->hide();
    if (*m_plan && !(*m_plan)->unreadable.empty()) {
        m_unreadable = new ItemList(this);
        setContent(m_unreadable);
    }
    translate();
    if (*m_plan && !(*m_plan)->records.empty()) {
        m_import->show();
        m_import->setFocus(Qt::TabFocusReason);
    }
    fit();
    announce(*this, detail());
}

void ImportDialog::translate()
{
    const AppLanguage language = m_model.language();
    const bool hasFailed = m_plan && !*m_plan;
    const bool isOver = hasFailed || (m_plan && (*m_plan)->records.empty());
    setTitle(qtText((hasFailed ? failedTitle : titleText).in(language)));
    setDetail(detail());
    m_progress->setAccessibleName(qtText(progressName.in(language)));
    m_cancel->setText(qtText((isOver ? closeText : cancelText).in(language)));
    m_import->setText(qtText(importText.in(language)));
    if (m_unreadable != nullptr) {
        m_unreadable->setAccessibleName(qtText(unreadableName.in(language)));
        listUnreadable();
    }
    fit();
}

void ImportDialog::listUnreadable()
{
    const AppLanguage language = m_model.language();
    const bool english = language == AppLanguage::english;
    const std::vector<UnreadableRow>& rows = (*m_plan)->unreadable;
    m_unreadable->clear();
    const std::size_t shown = std::min(rows.size(), mostRows);
    for (std::size_t index = 0; index < shown; ++index) {
        const QString line = QString::number(rows[index].line);
        m_unreadable->addLine(english ? QStringLiteral("Line %1").arg(line)
                                      : QStringLiteral("第 %1 行").arg(line),
                              qtText(title(rows[index].problem, language)));
    }
    if (shown < rows.size()) {
        const QString rest = QString::number(rows.size() - shown);
        m_unreadable->addLine(
            english ? QStringLiteral("And %1 more").arg(rest) : QStringLiteral("还有 %1 行").arg(rest), {});
    }
    m_unreadable->setCurrentRow(0);
}

QString ImportDialog::detail() const
{
    const AppLanguage language = m_model.language();
    const bool english = language == AppLanguage::english;
    if (!m_plan) {
        return (english ? QStringLiteral("Reading “%1”…") : QStringLiteral("正在读取“%1”…")).arg(m_name);
    }
    if (!*m_plan) {
        const ImportError& error = m_plan->error();
        return transferErrorText({sentence(error.reason), error.description}, language);
    }
    const ImportPlan& plan = **m_plan;
    const QString counts = (english ? QStringLiteral("“%1”: %2 new, %3 known already, %4 unreadable.")
                                    : QStringLiteral("“%1”：新记录 %2 条，已有 %3 条，无法读取 %4 行。"))
                               .arg(m_name)
                               .arg(plan.records.size())
                               .arg(plan.knownCount)
                               .arg(plan.unreadable.size());
    return plan.records.empty() ? counts + u'\n' + qtText(nothingText.in(language)) : counts;
}

} // namespace brevlin
