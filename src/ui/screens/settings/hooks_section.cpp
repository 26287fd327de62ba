#include "app/app_model.h"
#include "ui/controls/capsule_button.h"
#include "ui/screens/settings/hook_texts.h"
#include "ui/screens/settings/hooks_dialog.h"
#include "ui/screens/settings/settings_sections.h"
#include "ui/style/text.h"

#include <QDir>

#include <algorithm>

namespace brevlin {

namespace {

constexpr BilingualText headingText{"钩子程序", "Hooks"};
constexpr BilingualText runsText{"最近运行…", "Recent runs…"};
constexpr BilingualText noteText{"阶段开始、暂停、继续、结束或跳过时，依次运行此文件夹中的可执行文件：%1",
                                 "Whatever may be executed in this folder runs when a phase starts, pauses, "
                                 "resumes, ends or is skipped: %1"};

QString shortPath(const std::string& path)
{
    const QString whole = QString::fromStdString(path);
    const QString home = QDir::homePath() + u'/';
    return whole.startsWith(home) ? QStringLiteral("~/") + whole.mid(home.size()) : whole;
}

} // namespace

HooksSection::HooksSection(AppModel& model, QWidget* parent)
    : FormSection(parent)
    , m_model(model)
    , m_runs(new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact))
{
    FormRow* row = addRow();
    row->setContent(m_runs);
    m_note = row->addNote();
    m_failure = row->addNote(ThemeColor::orange, Symbol::exclamationmarkTriangleFill);
    connect(m_runs, &QAbstractButton::clicked, this, [this] {
        if (!m_dialog) {
            m_dialog = new HooksDialog(m_model, window());
        }
        m_dialog->show();
    });
    connect(&model, &AppModel::preferencesChanged, this, &HooksSection::refresh);
    connect(&model.hooks(), &HookCaller::recordsChanged, this, &HooksSection::refresh);
    refresh();
}

void HooksSection::refresh()
{
    const AppLanguage language = m_model.language();
    setHeading(qtText(headingText.in(language)));
    m_runs->setText(qtText(runsText.in(language)));
    m_runs->updateGeometry();
    m_note->setText(qtText(noteText.in(language)).arg(shortPath(m_model.hooks().folder())));
    const auto& records = m_model.hooks().records();
    const auto failure = std::find_if(records.begin(), records.end(), isFailure);
    m_failure->setVisible(failure != records.end());
    if (failure != records.end()) {
        const QString separator =
            language == AppLanguage::english ? QStringLiteral(": ") : QStringLiteral("：");
        m_failure->setText(hookSubject(*failure, language) + separator + hookOutcome(*failure, language));
    }
}

} // namespace brevlin
