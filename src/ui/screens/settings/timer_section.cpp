#include "app/app_model.h"
#include "ui/controls/number_stepper.h"
#include "ui/controls/switch_control.h"
#include "ui/screens/settings/settings_sections.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"

#include <algorithm>
#include <limits>

namespace brevlin {

namespace {

constexpr int longestMinutes = 180;
constexpr int longestInterval = 12;

constexpr BilingualText headingText{"计时", "Timer"};
constexpr BilingualText autoStartBreaksText{"完成专注后自动开始休息", "Automatically start breaks"};
constexpr BilingualText autoStartFocusText{"完成休息后自动开始专注", "Automatically start focus"};
constexpr BilingualText absencesText{"离开后询问", "Ask about time away"};
constexpr BilingualText absencesNoteText{
    "专注期间电脑睡眠或锁屏达到 3 分钟时，回来后询问这段时间是否计入。",
    "After 3 minutes of sleep or a locked screen in a focus phase, asks if they count."};
constexpr BilingualText decreaseText{"减少", "Decrease"};
constexpr BilingualText increaseText{"增加", "Increase"};

NumberStepper::Texts texts(const SentenceAroundNumber& sentence, AppLanguage language)
{
    return {sentence.first, sentence.second, qtText(decreaseText.in(language)),
            qtText(increaseText.in(language))};
}

// A stored document may hold any number.
int shown(std::int64_t number)
{
    return static_cast<int>(std::clamp<std::int64_t>(number, 0, std::numeric_limits<int>::max()));
}

void changeSettings(AppModel& model, const std::function<void(TimerSettings&)>& change)
{
    TimerSettings settings = model.preferences().timerSettings;
    change(settings);
    model.commitTimerSettings(settings);
}

} // namespace

TimerSection::TimerSection(AppModel& model, QWidget* parent) : FormSection(parent), m_model(model)
{
    for (const TimerPhase phase : allCases<TimerPhase>()) {
        auto* stepper = new NumberStepper(1, longestMinutes);
        addRow()->setContent(stepper);
        connect(stepper, &NumberStepper::valueChosen, this,
                [this, phase](int minutes) { m_model.setDuration(minutes, phase); });
        m_durations.push_back(stepper);
    }
    m_longBreakInterval = new NumberStepper(1, longestInterval);
    addRow()->setContent(m_longBreakInterval);
    connect(m_longBreakInterval, &NumberStepper::valueChosen, this, [this](int count) {
        changeSettings(m_model,
                       [count](TimerSettings& settings) { settings.focusSessionsPerLongBreak = count; });
    });

    const auto addSwitch = [this](FormRow*& row, SwitchControl*& control, bool TimerSettings::*field) {
        row = addRow();
        control = new SwitchControl;
        row->addControl(control, SwitchControl::bleed);
        connect(control, &QAbstractButton::clicked, this, [this, field](bool isOn) {
            changeSettings(m_model, [&](TimerSettings& settings) { settings.*field = isOn; });
        });
    };
    addSwitch(m_autoStartBreaksRow, m_autoStartBreaks, &TimerSettings::autoStartBreaks);
    addSwitch(m_autoStartFocusRow, m_autoStartFocus, &TimerSettings::autoStartFocus);
    m_absencesRow = addRow();
    m_absences = new SwitchControl;
    m_absencesRow->addControl(m_absences, SwitchControl::bleed);
    m_absencesNote = m_absencesRow->addNote();
    connect(m_absences, &QAbstractButton::clicked, &model, &AppModel::setAsksAboutAbsences);
    connect(&model, &AppModel::preferencesChanged, this, &TimerSection::refresh);
    refresh();
}

void TimerSection::refresh()
{
    const AppLanguage language = m_model.language();
    const TimerSettings& settings = m_model.preferences().timerSettings;
    setHeading(qtText(headingText.in(language)));
    for (const TimerPhase phase : allCases<TimerPhase>()) {
        NumberStepper* stepper = m_durations.at(static_cast<std::size_t>(phase));
        const auto minutes = std::chrono::duration<double, std::ratio<60>>(settings.duration(phase)).count();
        stepper->setTexts(texts(durationSentence(phase, language), language));
        stepper->setValue(shown(static_cast<std::int64_t>(minutes)));
    }
    m_longBreakInterval->setTexts(texts(longBreakIntervalSentence(language), language));
    m_longBreakInterval->setValue(shown(settings.focusSessionsPerLongBreak));

    const auto show = [language](FormRow* row, SwitchControl* control, const BilingualText& title,
                                 bool isOn) {
        row->setTitle(qtText(title.in(language)));
        control->setAccessibleName(qtText(title.in(language)));
        control->setChecked(isOn);
    };
    show(m_autoStartBreaksRow, m_autoStartBreaks, autoStartBreaksText, settings.autoStartBreaks);
    show(m_autoStartFocusRow, m_autoStartFocus, autoStartFocusText, settings.autoStartFocus);
    show(m_absencesRow, m_absences, absencesText, m_model.addedPreferences().asksAboutAbsences);
    m_absencesNote->setText(qtText(absencesNoteText.in(language)));
}

} // namespace brevlin
