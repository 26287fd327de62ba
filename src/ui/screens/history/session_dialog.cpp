#include "ui/screens/history/session_dialog.h"

#include "app/app_model.h"
#include "core/intention.h"
#include "core/time_text.h"
#include "ui/controls/choice_button.h"
#include "ui/controls/form.h"
#include "ui/controls/moment_field.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/spoken_element.h"
#include "ui/controls/switch_control.h"
#include "ui/controls/text_field.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTimeZone>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace brevlin {

namespace {

constexpr int contentWidth = 460;
constexpr int rowSpacing = 10;
constexpr int columnSpacing = 14;
constexpr Seconds usualLength{1500.0};

constexpr BilingualText editTitle{"编辑记录", "Edit Record"};
constexpr BilingualText addTitle{"添加记录", "Add Record"};
constexpr BilingualText phaseText{"阶段", "Phase"};
constexpr BilingualText outcomeText{"结果", "Outcome"};
constexpr BilingualText startText{"开始", "Start"};
constexpr BilingualText endText{"结束", "End"};
constexpr BilingualText intentionText{"专注内容", "Intention"};
constexpr BilingualText effectiveTitle{"计入时长", "Counts as"};
constexpr BilingualText awayText{"离开", "Away"};
constexpr BilingualText cancelText{"取消", "Cancel"};
constexpr BilingualText saveText{"保存", "Save"};
constexpr BilingualText endsBeforeStart{"结束时间早于开始时间。", "It ends before it starts."};
constexpr BilingualText endsInFuture{"结束时间还没到。", "It ends in the future."};

// The wall clock of the calendar's zone, carried by a time that has no zone.
QDateTime wallClock(Instant instant, const Calendar& calendar)
{
    const std::chrono::year_month_day day{calendar.localDay(instant)};
    const Seconds sinceHour = instant - calendar.date(calendar.localDay(instant), calendar.hour(instant));
    const int minute = static_cast<int>(std::fmod(std::max(sinceHour.count(), 0.0), 3600.0) / 60);
    return {QDate(static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                  static_cast<int>(static_cast<unsigned>(day.day()))),
            QTime(calendar.hour(instant), minute), QTimeZone::utc()};
}

Instant instantAt(const QDateTime& wall, const Calendar& calendar)
{
    using namespace std::chrono;
    const LocalDay day{year{wall.date().year()} / month{static_cast<unsigned>(wall.date().month())} /
                       std::chrono::day{static_cast<unsigned>(wall.date().day())}};
    return calendar.date(day, wall.time().hour()) + Seconds{60.0 * wall.time().minute()};
}

std::size_t countOf(const std::vector<SessionRecord>& records, std::string_view intention)
{
    return static_cast<std::size_t>(
        std::count_if(records.begin(), records.end(), [intention](const SessionRecord& record) {
            return record.intention.view() == intention;
        }));
}

} // namespace

SessionDialog::SessionDialog(AppModel& model, const std::optional<Uuid>& record, QWidget* parent)
    : AlertDialog(parent)
    , m_model(model)
    , m_phase(new SegmentedPicker(static_cast<int>(RawValues<TimerPhase>::cases.size()), this))
    , m_outcome(new ChoiceButton(this))
    , m_start(new MomentField(this))
    , m_end(new MomentField(this))
    , m_intention(new TextField(TextField::Look::framed, this))
    , m_effective(new FormLabel(textFont(TextRole::body), ThemeColor::label, this))
    , m_note(new FormLabel(textFont(TextRole::caption), ThemeColor::secondaryLabel, this))
    , m_cancel(addButton(CapsuleStyle::secondary))
    , m_save(addButton(CapsuleStyle::primary))
{
    if (const SessionRecord* found = record ? model.historyEditor().find(*record) : nullptr) {
        m_record = *found;
        m_details = model.historyEditor().detailsOf(*record);
        m_before = correctionOf(*found);
    } else {
        const Instant now = model.now();
        m_before = {TimerPhase::focus, SessionOutcome::completed, now - usualLength, now, {}};
    }
    setContentWidth(contentWidth);
    layOut();
    translate();
    m_phase->setCurrentIndex(static_cast<int>(m_before.phase));
    m_outcome->setCurrentIndex(static_cast<int>(m_before.outcome));
    m_start->setDateTime(wallClock(m_before.start, model.calendar()));
    m_end->setDateTime(wallClock(m_before.end, model.calendar()));
    m_intention->setText(qtText(m_before.intention));
    connect(m_phase, &SegmentedPicker::chosen, this, [this](int index) {
        m_phase->setCurrentIndex(index);
        refresh();
    });
    connect(m_outcome, &ChoiceButton::chosen, this, &SessionDialog::refresh);
    connect(m_start, &QDateTimeEdit::dateTimeChanged, this, &SessionDialog::refresh);
    connect(m_end, &QDateTimeEdit::dateTimeChanged, this, &SessionDialog::refresh);
    connect(m_intention, &QLineEdit::textChanged, this, &SessionDialog::refresh);
    connect(m_cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_save, &QAbstractButton::clicked, this, &SessionDialog::save);
    connect(&model, &AppModel::preferencesChanged, this, &SessionDialog::translate);
    refresh();
    (m_record ? static_cast<QWidget*>(m_intention) : m_start)->setFocus(Qt::TabFocusReason);
}

void SessionDialog::layOut()
{
    auto* content = new QWidget(this);
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(0, 4, 0, 0);
    grid->setHorizontalSpacing(columnSpacing);
    grid->setVerticalSpacing(rowSpacing);
    grid->setColumnStretch(1, 1);
    addRow(*grid, intentionText, m_intention);

    m_everywhereRow = new QWidget(content);
    auto* everywhere = new QHBoxLayout(m_everywhereRow);
    everywhere->setContentsMargins(0, 0, 0, 0);
    m_everywhereText =
        new FormLabel(textFont(TextRole::caption), ThemeColor::secondaryLabel, m_everywhereRow);
    m_everywhere = new SwitchControl(m_everywhereRow);
    m_everywhere->setCheckable(true);
    everywhere->addWidget(m_everywhereText, 1);
    everywhere->addWidget(m_everywhere);
    grid->addWidget(m_everywhereRow, grid->rowCount(), 1);

    addRow(*grid, phaseText, m_phase);
    addRow(*grid, outcomeText, m_outcome);
    addRow(*grid, startText, m_start);
    addRow(*grid, endText, m_end);
    addAbsences(*grid);
    addRow(*grid, effectiveTitle, m_effective);
    if (m_details.asRecorded) {
        m_recorded = new FormLabel(textFont(TextRole::caption), ThemeColor::secondaryLabel, content);
        grid->addWidget(m_recorded, grid->rowCount(), 1);
    }
    m_note->setWordWrap(true);
    grid->addWidget(m_note, grid->rowCount(), 0, 1, 2);
    setContent(content);
}

FormLabel* SessionDialog::addRow(QGridLayout& grid, const BilingualText& title, QWidget* control)
{
    auto* label = new FormLabel(textFont(TextRole::body), ThemeColor::secondaryLabel, this);
    const int row = grid.rowCount();
    grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
    const bool isWide = control == m_intention || control == m_phase || control == m_effective;
    grid.addWidget(control, row, 1, isWide ? Qt::Alignment{} : Qt::AlignLeft);
    const auto name = [this, label, control, title] {
        const QString text = qtText(title.in(m_model.language()));
        label->setText(text);
        control->setAccessibleName(text);
    };
    connect(&m_model, &AppModel::preferencesChanged, label, name);
    name();
    return label;
}

// What was answered may be answered otherwise; it holds at once and is a step of its own.
void SessionDialog::addAbsences(QGridLayout& grid)
{
    for (std::size_t index = 0; m_record && index < m_details.absences.size(); ++index) {
        const Absence& absence = m_details.absences[index];
        if (!absence.end) {
            continue;
        }
        auto* answer = new ChoiceButton(this);
        const AppLanguage language = m_model.language();
        const Calendar& calendar = m_model.calendar();
        const std::string from = calendar.shortTimeText(absence.start);
        const std::string range = from + "–" + calendar.shortTimeText(*absence.end);
        const bool english = language == AppLanguage::english;
        answer->setChoices({qtText(range + (english ? ": not answered" : "：未回答")),
                            qtText(range + (english ? ": keep" : "：保留")),
                            qtText(range + (english ? ": do not count" : "：不计入")),
                            qtText((english ? "Ended at " : "结束于 ") + from)});
        answer->setCurrentIndex(static_cast<int>(absence.decision));
        addRow(grid, awayText, answer);
        connect(answer, &ChoiceButton::chosen, this, [this, index](int choice) {
            const Uuid id = m_record->id;
            accept();
            m_model.decideAbsence(id, index, static_cast<AbsenceDecision>(choice));
        });
    }
}

void SessionDialog::translate()
{
    const AppLanguage language = m_model.language();
    setTitle(qtText((m_record ? editTitle : addTitle).in(language)));
    setDetail({});
    QStringList phases;
    for (const TimerPhase phase : allCases<TimerPhase>()) {
        phases.push_back(qtText(title(phase, language)));
    }
    m_phase->setTexts(phases);
    QStringList outcomes;
    for (const SessionOutcome outcome : allCases<SessionOutcome>()) {
        outcomes.push_back(qtText(title(outcome, language)));
    }
    m_outcome->setChoices(outcomes);
    m_intention->setMenuTexts(TextField::menuTexts(language == AppLanguage::english));
    m_cancel->setText(qtText(cancelText.in(language)));
    m_save->setText(qtText(saveText.in(language)));
    if (m_recorded != nullptr) {
        const SessionRecord& recorded = *m_details.asRecorded;
        const std::string times = m_model.calendar().shortTimeText(recorded.actualStartAt) + "–" +
                                  m_model.calendar().shortTimeText(recorded.endedAt);
        const std::string length = TimeText::duration(recorded.effectiveDuration, language);
        m_recorded->setText(language == AppLanguage::english ? qtText("Recorded as " + times + ", " + length)
                                                             : qtText("最初记录为 " + times + "，" + length));
    }
    refresh();
}

// A field that says what it said before means the very instant of before, seconds and all.
Instant SessionDialog::instantOf(const MomentField& field, Instant before) const
{
    const Calendar& calendar = m_model.calendar();
    return field.dateTime() == wallClock(before, calendar) ? before : instantAt(field.dateTime(), calendar);
}

SessionCorrection SessionDialog::correction() const
{
    SessionCorrection result;
    result.phase = static_cast<TimerPhase>(m_phase->currentIndex());
    result.outcome = static_cast<SessionOutcome>(m_outcome->currentIndex());
    result.start = instantOf(*m_start, m_before.start);
    result.end = instantOf(*m_end, m_before.end);
    result.intention = m_intention->text() == qtText(m_before.intention)
                           ? m_before.intention
                           : typedIntention(m_intention->text().toStdString(), longestIntention);
    return result;
}

QString SessionDialog::effectiveText(const SessionCorrection& correction) const
{
    if (correction.end < correction.start) {
        return QStringLiteral("–");
    }
    const Seconds length = m_record ? corrected(*m_record, correction, m_details).effectiveDuration
                                    : correction.end - correction.start;
    return qtText(TimeText::duration(length, m_model.language()));
}

QString SessionDialog::noteText(const SessionCorrection& correction) const
{
    const AppLanguage language = m_model.language();
    if (const auto problem = problemOf(correction, m_model.now())) {
        return qtText(
            (problem == CorrectionProblem::endsInFuture ? endsInFuture : endsBeforeStart).in(language));
    }
    const SessionRecord* other = overlapping(m_model.sessions(), {correction.start, correction.end},
                                             m_record ? std::optional{m_record->id} : std::nullopt);
    if (other == nullptr) {
        return {};
    }
    const Calendar& calendar = m_model.calendar();
    const std::string which = std::string(title(other->phase().value_or(TimerPhase::shortBreak), language)) +
                              " " + calendar.shortTimeText(other->actualStartAt) + "–" +
                              calendar.shortTimeText(other->endedAt);
    return language == AppLanguage::english
               ? qtText("Overlaps with " + which + ". It can be saved all the same.")
               : qtText("与“" + which + "”重叠，仍然可以保存。");
}

void SessionDialog::refresh()
{
    if (m_outcome->currentIndex() < 0 || m_everywhereText == nullptr) {
        return;
    }
    const AppLanguage language = m_model.language();
    const SessionCorrection now = correction();
    m_effective->setText(effectiveText(now));
    const QString note = noteText(now);
    const bool isNew = note != m_note->text();
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    if (isNew && !note.isEmpty() && isVisible()) {
        announce(*this, note);
    }
    const bool isRenamed = m_record && !m_before.intention.empty() && now.intention != m_before.intention;
    const std::size_t others = isRenamed ? countOf(m_model.sessions(), m_before.intention) : 0;
    m_everywhereRow->setVisible(others > 1);
    if (others > 1) {
        const QString count = QString::number(others);
        const QString text = language == AppLanguage::english
                                 ? QStringLiteral("Change it in all %1 records").arg(count)
                                 : QStringLiteral("同时更改全部 %1 条记录").arg(count);
        m_everywhereText->setText(text);
        m_everywhere->setAccessibleName(text);
    }
    m_save->setEnabled(!problemOf(now, m_model.now()) && (!m_record || !(now == m_before)));
    fit();
}

// From a field Return saves.
void SessionDialog::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && qobject_cast<PlainButton*>(focusWidget()) == nullptr) {
        m_save->click();
    } else {
        AlertDialog::keyPressEvent(event);
    }
}

void SessionDialog::save()
{
    m_start->interpretText();
    m_end->interpretText();
    const SessionCorrection now = correction();
    if (!m_save->isEnabled() || problemOf(now, m_model.now())) {
        return;
    }
    const bool isForAll = m_everywhereRow->isVisibleTo(this) && m_everywhere->isChecked();
    accept();
    HistoryEditor& editor = m_model.historyEditor();
    if (!m_record) {
        editor.add(addedRecord(now, m_model.calendar().timeZone()->identifier()));
        return;
    }
    if (isForAll) {
        editor.renameIntention(m_before.intention, now.intention);
    }
    if (const SessionRecord* record = editor.find(m_record->id)) {
        editor.change(corrected(*record, now, m_details));
    }
}

} // namespace brevlin
