#include "app/app_model.h"
#include "ui/controls/link_button.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/switch_control.h"
#include "ui/screens/settings/settings_sections.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"

namespace brevlin {

namespace {

constexpr BilingualText headingText{"提醒", "Alerts"};
constexpr BilingualText intensityText{"提醒强度", "Alert intensity"};
constexpr BilingualText soundText{"播放完成声音", "Play completion sound"};
constexpr BilingualText weakenedText{
    "系统未允许时效性通知，强提醒会退化为应用内声音与普通通知。",
    "Time-sensitive notifications are disabled; strong alerts will use app sound and regular notifications."};
constexpr BilingualText muteText{"Brevlin 不使用 Critical Alert，因此不会绕过系统静音。",
                                 "Brevlin does not use Critical Alerts and will not bypass system mute."};
constexpr BilingualText enableText{"开启通知", "Enable notifications"};
constexpr BilingualText quietText{"专注时屏蔽通知", "Silence notifications during focus"};
constexpr BilingualText quietNoteText{
    "专注期间打开桌面的勿扰模式，休息、暂停或退出时恢复原状。Brevlin 的提醒照常显示。",
    "Turns on the desktop’s do-not-disturb while you focus, and puts it back for a break, a pause and at the "
    "end. Brevlin’s own announcements are still seen."};
constexpr BilingualText noSwitchText{"此桌面没有可供程序使用的勿扰开关。",
                                     "This desktop has no switch that a program can turn."};

} // namespace

AlertSection::AlertSection(AppModel& model, PhaseAnnouncer& announcer, QWidget* parent)
    : FormSection(parent)
    , m_model(model)
    , m_announcer(announcer)
    , m_intensityRow(addRow())
    , m_intensity(new SegmentedPicker(static_cast<int>(allCases<AlertIntensity>().size())))
    , m_intensityDetail(m_intensityRow->addNote())
    , m_soundRow(addRow())
    , m_sound(new SwitchControl)
    , m_weakened(m_soundRow->addNote(ThemeColor::orange, Symbol::exclamationmarkTriangleFill))
    , m_muteNote(m_soundRow->addNote())
    , m_statusRow(addRow())
    , m_enable(new LinkButton)
    , m_quietRow(addRow())
    , m_quiet(new SwitchControl)
    , m_quietNote(m_quietRow->addNote())
{
    m_intensityRow->addControl(m_intensity);
    m_soundRow->addControl(m_sound, SwitchControl::bleed);
    m_statusRow->addControl(m_enable, LinkButton::bleed);
    m_quietRow->addControl(m_quiet, SwitchControl::bleed);
    connect(m_intensity, &SegmentedPicker::chosen, this, [this](int index) {
        TimerSettings settings = m_model.preferences().timerSettings;
        settings.alertIntensity = allCases<AlertIntensity>().at(static_cast<std::size_t>(index));
        m_model.commitTimerSettings(settings);
    });
    connect(m_sound, &QAbstractButton::clicked, &model, &AppModel::setPlayCompletionSound);
    connect(m_enable, &QAbstractButton::clicked, &m_announcer,
            &PhaseAnnouncer::requestNotificationPermission);
    connect(m_quiet, &QAbstractButton::clicked, &model, &AppModel::setSilencesNotifications);
    connect(&model.focusQuiet(), &FocusQuiet::supportChanged, this, &AlertSection::refreshQuiet);
    connect(&model, &AppModel::preferencesChanged, this, &AlertSection::refresh);
    connect(&m_announcer, &PhaseAnnouncer::notificationAuthorizationChanged, this,
            &AlertSection::refreshStatus);
    refresh();
}

void AlertSection::refresh()
{
    const AppLanguage language = m_model.language();
    const AlertIntensity intensity = m_model.preferences().timerSettings.alertIntensity;
    setHeading(qtText(headingText.in(language)));
    QStringList titles;
    for (const AlertIntensity each : allCases<AlertIntensity>()) {
        titles << qtText(title(each, language));
    }
    m_intensityRow->setTitle(qtText(intensityText.in(language)));
    m_intensity->setAccessibleName(qtText(intensityText.in(language)));
    m_intensity->setTexts(titles);
    m_intensity->setCurrentIndex(static_cast<int>(intensity));
    m_intensityDetail->setText(qtText(detail(intensity, language)));

    m_soundRow->setTitle(qtText(soundText.in(language)));
    m_sound->setAccessibleName(qtText(soundText.in(language)));
    m_sound->setChecked(m_model.preferences().playCompletionSound);
    m_weakened->setText(qtText(weakenedText.in(language)));
    m_muteNote->setText(qtText(muteText.in(language)));
    m_enable->setText(qtText(enableText.in(language)));
    refreshStatus();
    refreshQuiet();
}

void AlertSection::showEvent(QShowEvent* event)
{
    FormSection::showEvent(event);
    m_model.focusQuiet().look();
    refreshQuiet();
}

void AlertSection::refreshQuiet()
{
    const AppLanguage language = m_model.language();
    const bool isPossible = m_model.focusQuiet().support() != NotificationSilencer::Support::none;
    const QString note = qtText((isPossible ? quietNoteText : noSwitchText).in(language));
    m_quietRow->setTitle(qtText(quietText.in(language)));
    m_quietNote->setText(note);
    m_quiet->setAccessibleName(qtText(quietText.in(language)));
    m_quiet->setAccessibleDescription(note);
    m_quiet->setEnabled(isPossible);
    m_quiet->setChecked(m_model.addedPreferences().silencesNotifications);
}

void AlertSection::refreshStatus()
{
    const AlertIntensity intensity = m_model.preferences().timerSettings.alertIntensity;
    const auto& authorization = m_announcer.notificationAuthorization();
    const NotificationStatus status = notificationStatus(authorization.state, m_model.language());
    m_weakened->setVisible(strongAlertIsWeakened(intensity, authorization));
    m_statusRow->setSymbol(status.symbol, status.symbol == Symbol::bellBadgeFill
                                              ? ThemeColor::green
                                              : ThemeColor::secondaryLabel);
    m_statusRow->setTitle(qtText(status.text));
    m_enable->setVisible(status.canBeEnabled);
}

} // namespace brevlin
