#include "ui/screens/settings/export_dialog.h"

#include "app/app_model.h"
#include "ui/controls/choice_button.h"
#include "ui/controls/form.h"
#include "ui/controls/moment_field.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/spoken_element.h"
#include "ui/controls/switch_control.h"
#include "ui/screens/settings/file_choice.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>

#include <chrono>

namespace brevlin {

namespace {

constexpr int contentWidth = 420;
constexpr int rowSpacing = 10;
constexpr int columnSpacing = 14;

constexpr BilingualText titleText{"导出记录", "Export Records"};
constexpr BilingualText doneTitle{"已导出", "Exported"};
constexpr BilingualText failedTitle{"导出失败", "Export Failed"};
constexpr BilingualText runsText{"正在导出…", "Exporting…"};
constexpr BilingualText formatText{"格式", "Format"};
constexpr BilingualText periodText{"时段", "Period"};
constexpr BilingualText allText{"全部", "All"};
constexpr BilingualText yearText{"今年", "This year"};
constexpr BilingualText monthText{"本月", "This month"};
constexpr BilingualText fromToText{"自选日期", "From – to"};
constexpr BilingualText fromText{"从", "From"};
constexpr BilingualText toText{"到", "To"};
constexpr BilingualText phasesText{"阶段", "Phases"};
constexpr BilingualText focusText{"仅专注", "Focus only"};
constexpr BilingualText markText{"供 Excel 使用（字节顺序标记）", "For Excel (byte order mark)"};
constexpr BilingualText cancelText{"取消", "Cancel"};
constexpr BilingualText closeText{"关闭", "Close"};
constexpr BilingualText exportText{"导出…", "Export…"};
constexpr BilingualText emptyText{"所选范围内没有记录，文件里没有内容。",
                                  "There are no records in what was chosen, so the file holds none."};

QDate dateOf(LocalDay day)
{
    const std::chrono::year_month_day date{day};
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

LocalDay dayOf(const QDate& date)
{
    using namespace std::chrono;
    return LocalDay{year{date.year()} / month{static_cast<unsigned>(date.month())} /
                    day{static_cast<unsigned>(date.day())}};
}

} // namespace

ExportDialog::ExportDialog(AppModel& model, QWidget* parent)
    : AlertDialog(parent)
    , m_model(model)
    , m_fields(new QWidget(this))
    , m_format(new ChoiceButton(m_fields))
    , m_period(new ChoiceButton(m_fields))
    , m_days(new QWidget(m_fields))
    , m_first(new MomentField(m_days, MomentField::Precision::day))
    , m_dash(new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel, m_days))
    , m_last(new MomentField(m_days, MomentField::Precision::day))
    , m_phases(new SegmentedPicker(2, m_fields))
    , m_mark(new SwitchControl(m_fields))
    , m_cancel(addButton(CapsuleStyle::secondary))
    , m_export(addButton(CapsuleStyle::primary))
{
    setContentWidth(contentWidth);
    auto* days = new QHBoxLayout(m_days);
    days->setContentsMargins(0, 0, 0, 0);
    days->addWidget(m_first);
    days->addWidget(m_dash);
    days->addWidget(m_last);
    m_dash->setText(QStringLiteral("–"));
    m_mark->setCheckable(true);
    auto* grid = new QGridLayout(m_fields);
    grid->setContentsMargins(0, 4, 0, 0);
    grid->setHorizontalSpacing(columnSpacing);
    grid->setVerticalSpacing(rowSpacing);
    grid->setColumnStretch(1, 1);
    addRow(*grid, formatText, m_format);
    addRow(*grid, periodText, m_period);
    grid->addWidget(m_days, grid->rowCount(), 1, Qt::AlignLeft);
    m_phasesTitle = addRow(*grid, phasesText, m_phases);
    m_markTitle = new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel, m_fields);
    auto* mark = new QHBoxLayout;
    mark->addWidget(m_markTitle, 1);
    mark->addWidget(m_mark);
    grid->addLayout(mark, grid->rowCount(), 0, 1, 2);
    setContent(m_fields);
    const LocalDay today = model.calendar().localDay(model.now());
    m_first->setDate(dateOf(today));
    m_last->setDate(dateOf(today));
    m_phases->setCurrentIndex(1);
    connect(m_format, &ChoiceButton::chosen, this, &ExportDialog::refresh);
    connect(m_period, &ChoiceButton::chosen, this, &ExportDialog::refresh);
    connect(m_first, &QDateTimeEdit::dateChanged, this, &ExportDialog::refresh);
    connect(m_last, &QDateTimeEdit::dateChanged, this, &ExportDialog::refresh);
    connect(m_phases, &SegmentedPicker::chosen, m_phases, &SegmentedPicker::setCurrentIndex);
    connect(m_cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_export, &QAbstractButton::clicked, this, &ExportDialog::chooseFile);
    connect(&model, &AppModel::preferencesChanged, this, &ExportDialog::translate);
    translate();
    m_format->setFocus(Qt::TabFocusReason);
}

QWidget* ExportDialog::addRow(QGridLayout& grid, const BilingualText& title, QWidget* control)
{
    auto* label = new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel, m_fields);
    const int row = grid.rowCount();
    grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(control, row, 1, Qt::AlignLeft);
    const auto name = [this, label, control, title] {
        label->setText(qtText(title.in(m_model.language())));
        control->setAccessibleName(label->text());
    };
    connect(&m_model, &AppModel::preferencesChanged, label, name);
    name();
    return label;
}

void ExportDialog::translate()
{
    const AppLanguage language = m_model.language();
    const auto text = [language](const BilingualText& words) {
        return qtText(words.in(language));
    };
    if (!m_isDone) {
        setTitle(text(titleText));
        setDetail({});
    }
    m_format->setChoices({QStringLiteral("CSV"), QStringLiteral("JSON"), QStringLiteral("iCalendar"),
                          QStringLiteral("Timewarrior")});
    m_period->setChoices({text(allText), text(yearText), text(monthText), text(fromToText)});
    m_phases->setTexts({text(focusText), text(allText)});
    static_cast<FormLabel*>(m_markTitle)->setText(text(markText));
    m_mark->setAccessibleName(text(markText));
    m_first->setAccessibleName(text(fromText));
    m_last->setAccessibleName(text(toText));
    m_cancel->setText(text(m_isDone ? closeText : cancelText));
    m_export->setText(text(exportText));
    refresh();
}

// Only what the form knows is asked.
void ExportDialog::refresh()
{
    const auto format = static_cast<ExportFormat>(m_format->currentIndex());
    const bool hasPhases = format == ExportFormat::csv || format == ExportFormat::json;
    for (QWidget* part : {static_cast<QWidget*>(m_phases), m_phasesTitle}) {
        part->setVisible(hasPhases);
    }
    for (QWidget* part : {static_cast<QWidget*>(m_mark), m_markTitle}) {
        part->setVisible(format == ExportFormat::csv);
    }
    m_days->setVisible(static_cast<Period>(m_period->currentIndex()) == Period::fromTo);
    const ExportSelection selection = choice().selection;
    m_export->setEnabled(!selection.first || !selection.last || *selection.first <= *selection.last);
    fit();
}

ExportChoice ExportDialog::choice() const
{
    using namespace std::chrono;
    ExportChoice choice;
    choice.format = static_cast<ExportFormat>(m_format->currentIndex());
    const bool hasPhases = choice.format == ExportFormat::csv || choice.format == ExportFormat::json;
    if (hasPhases && m_phases->currentIndex() == 0) {
        choice.selection.phases = {TimerPhase::focus};
    }
    choice.hasByteOrderMark = choice.format == ExportFormat::csv && m_mark->isChecked();
    const year_month_day today{m_model.calendar().localDay(m_model.now())};
    switch (static_cast<Period>(m_period->currentIndex())) {
    case Period::all:
        break;
    case Period::year:
        choice.selection.first = LocalDay{today.year() / January / 1};
        choice.selection.last = LocalDay{today.year() / December / 31};
        break;
    case Period::month:
        choice.selection.first = LocalDay{today.year() / today.month() / 1};
        choice.selection.last = LocalDay{today.year() / today.month() / std::chrono::last};
        break;
    case Period::fromTo:
        choice.selection.first = dayOf(m_first->date());
        choice.selection.last = dayOf(m_last->date());
        break;
    }
    return choice;
}

QString ExportDialog::fileName() const
{
    const auto format = static_cast<ExportFormat>(m_format->currentIndex());
    const bool isOfOther = format == ExportFormat::timewarrior; // which is no JSON of ours
    const QString day = dateOf(m_model.calendar().localDay(m_model.now())).toString(Qt::ISODate);
    return QStringLiteral("brevlin-") + (isOfOther ? QStringLiteral("timewarrior-") : QString()) + day +
           u'.' + qtText(isOfOther ? rawValue(ExportFormat::json) : rawValue(format));
}

void ExportDialog::chooseFile()
{
    m_first->interpretText();
    m_last->interpretText();
    if (m_export->isEnabled()) {
        chooseFileToWrite(*this, m_model.language(), fileName(),
                          [this](const QString& path) { exportTo(path); });
    }
}

void ExportDialog::exportTo(const QString& path)
{
    m_export->setEnabled(false);
    m_cancel->setFocus(Qt::TabFocusReason);
    m_fields->setEnabled(false);
    setDetail(qtText(runsText.in(m_model.language())));
    fit();
    m_model.historyTransfer().exportTo(
        path.toStdString(), choice(), std::string(localeIdentifier(m_model.language())), m_model.language(),
        [&model = m_model, self = QPointer(this),
         path](const Expected<std::size_t, TransferError>& exported) {
            if (self != nullptr && self->isVisible()) {
                self->finish(path, exported);
            } else if (!exported) {
                const AppLanguage language = model.language();
                model.messages().raise(std::string(failedTitle.in(language)),
                                       transferErrorText(exported.error(), language).toStdString());
            }
        });
}

void ExportDialog::finish(const QString& path, const Expected<std::size_t, TransferError>& exported)
{
    const AppLanguage language = m_model.language();
    m_fields->setEnabled(true);
    if (!exported) {
        setTitle(qtText(failedTitle.in(language)));
        const QString problem = transferErrorText(exported.error(), language);
        setDetail(problem);
        refresh();
        announce(*this, problem);
        return;
    }
    m_isDone = true;
    const QString name = QFileInfo(path).fileName();
    const QString count = recordCount(*exported, language);
    const QString result = *exported == 0 ? qtText(emptyText.in(language))
                           : language == AppLanguage::english
                               ? QStringLiteral("%1 in “%2”.").arg(count, name)
                               : QStringLiteral("“%2”中有 %1。").arg(count, name);
    setTitle(qtText(doneTitle.in(language)));
    setDetail(result);
    m_fields->hide();
    m_export->hide();
    m_cancel->setText(qtText(closeText.in(language)));
    fit();
    announce(*this, result);
}

// From a field Return goes on.
void ExportDialog::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && (m_first->hasFocus() || m_last->hasFocus())) {
        m_export->click();
    } else {
        AlertDialog::keyPressEvent(event);
    }
}

} // namespace brevlin
