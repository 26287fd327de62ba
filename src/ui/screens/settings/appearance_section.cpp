#include "app/app_model.h"
#include "app/capsule.h"
#include "ui/controls/link_button.h"
#include "ui/controls/number_stepper.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/switch_control.h"
#include "ui/screens/settings/settings_sections.h"
#include "ui/screens/settings/settings_texts.h"
#include "ui/style/text.h"

#include <QGuiApplication>

#include <cmath>

namespace brevlin {

namespace {

constexpr BilingualText headingText{"显示与启动", "Appearance & launch"};
constexpr BilingualText languageText{"应用语言", "App language"};
constexpr BilingualText languageNoteText{"立即应用到 Brevlin 的全部界面文字。",
                                         "Applies immediately to all Brevlin interface text."};
constexpr BilingualText appearanceText{"顶部计时器外观", "Top timer appearance"};
constexpr BilingualText appearanceNoteText{
    "同时应用于圆形倒计时、展开胶囊和完成灵动岛。",
    "Applies to the compact timer, expanded capsule, and completion island."};
constexpr BilingualText capsuleText{"倒计时期间常驻顶部胶囊", "Keep top capsule visible while timing"};
constexpr BilingualText capsuleNoteText{
    "默认开启。关闭后倒计时期间隐藏，计时结束时仍会展开提醒。",
    "Enabled by default. When disabled, it stays hidden while timing and appears at completion."};
constexpr BilingualText acrossText{"胶囊距左侧：", "Capsule from the left: "};
constexpr BilingualText downText{"胶囊距顶部：", "Capsule from the top: "};
constexpr BilingualText percentText{"%", " %"};
constexpr BilingualText decreaseAcrossText{"向左移动", "Move left"};
constexpr BilingualText increaseAcrossText{"向右移动", "Move right"};
constexpr BilingualText decreaseDownText{"向上移动", "Move up"};
constexpr BilingualText increaseDownText{"向下移动", "Move down"};
constexpr BilingualText placeNoteText{
    "与拖动胶囊相同；靠近左右边缘时会自动吸附。",
    "The same as dragging the capsule; near a side of the screen it snaps to it."};
constexpr BilingualText launchText{"登录时启动", "Launch at login"};
constexpr BilingualText approvalText{"需要在系统设置中批准后台项目。",
                                     "Approval is required in System Settings."};
constexpr BilingualText openSettingsText{"打开系统设置", "Open System Settings"};

} // namespace

AppearanceSection::AppearanceSection(AppModel& model, LaunchAtLogin& launchAtLogin, QWidget* parent)
    : FormSection(parent), m_model(model), m_launchAtLogin(launchAtLogin)
{
    addPickers();
    addSwitches();
    connect(&model, &AppModel::preferencesChanged, this, &AppearanceSection::refresh);
    connect(&m_launchAtLogin, &LaunchAtLogin::launchAtLoginStatusChanged, this, &AppearanceSection::refresh);
    refresh();
}

void AppearanceSection::addPickers()
{
    m_languageRow = addRow();
    m_language = new SegmentedPicker(static_cast<int>(allCases<AppLanguage>().size()));
    m_languageRow->addControl(m_language);
    m_languageNote = m_languageRow->addNote();
    connect(m_language, &SegmentedPicker::chosen, this, [this](int index) {
        m_model.setAppLanguage(allCases<AppLanguage>().at(static_cast<std::size_t>(index)));
    });

    m_appearanceRow = addRow();
    m_appearance = new SegmentedPicker(static_cast<int>(allCases<TopTimerAppearance>().size()));
    m_appearanceRow->addControl(m_appearance);
    m_appearanceNote = m_appearanceRow->addNote();
    connect(m_appearance, &SegmentedPicker::chosen, this, [this](int index) {
        m_model.setTopTimerAppearance(allCases<TopTimerAppearance>().at(static_cast<std::size_t>(index)));
    });
}

void AppearanceSection::addSwitches()
{
    m_capsuleRow = addRow();
    m_capsule = new SwitchControl;
    m_capsuleRow->addControl(m_capsule, SwitchControl::bleed);
    m_capsuleNote = m_capsuleRow->addNote();
    connect(m_capsule, &QAbstractButton::clicked, &m_model, &AppModel::setShowTopCapsuleWhileRunning);

    addPlace();

    m_launchRow = addRow();
    m_launch = new SwitchControl;
    m_launchRow->addControl(m_launch, SwitchControl::bleed);
    connect(m_launch, &QAbstractButton::clicked, &m_launchAtLogin, &LaunchAtLogin::setLaunchAtLogin);

    m_approvalRow = addRow();
    m_openSettings = new LinkButton;
    m_approvalRow->addControl(m_openSettings, LinkButton::bleed);
    connect(m_openSettings, &QAbstractButton::clicked, &m_launchAtLogin,
            &LaunchAtLogin::openLoginItemSettings);
}

void AppearanceSection::addPlace()
{
    // One step beyond an edge leads to the screen there.
    const int beyond = QGuiApplication::screens().size() > 1 ? 1 : 0;
    const auto addStepper = [this, beyond](FormRow*& row, double CapsulePlace::*share) {
        row = addRow();
        auto* stepper = new NumberStepper(-beyond, 100 + beyond);
        row->setContent(stepper);
        connect(stepper, &NumberStepper::valueChosen, this, [this, share](int percent) {
            if (auto place = m_model.capsuleMover()->place()) {
                (*place).*share = percent / 100.0;
                m_model.capsuleMover()->moveTo(*place);
            }
            refreshPlace();
        });
        return stepper;
    };
    m_across = addStepper(m_acrossRow, &CapsulePlace::x);
    m_down = addStepper(m_downRow, &CapsulePlace::y);
    m_placeNote = m_downRow->addNote();
    connect(&m_model, &AppModel::ticked, this, &AppearanceSection::refreshPlace); // it may be dragged, too
}

void AppearanceSection::refreshPlace()
{
    CapsuleMover* mover = m_model.capsuleMover();
    const auto place = mover != nullptr ? mover->place() : std::nullopt;
    m_acrossRow->setVisible(place.has_value());
    m_downRow->setVisible(place.has_value());
    if (place) {
        const auto percent = [](double share) {
            return static_cast<int>(std::lround(share * 100));
        };
        m_across->setValue(percent(place->x));
        m_down->setValue(percent(place->y));
    }
}

void AppearanceSection::refresh()
{
    const AppLanguage language = m_model.language();
    const AppPreferences& preferences = m_model.preferences();
    const auto text = [language](const BilingualText& pair) {
        return qtText(pair.in(language));
    };
    const auto name = [&text](FormRow* row, QWidget* control, const BilingualText& title) {
        row->setTitle(text(title));
        control->setAccessibleName(text(title));
    };
    setHeading(text(headingText));
    name(m_languageRow, m_language, languageText);
    QStringList languages;
    for (const AppLanguage each : allCases<AppLanguage>()) {
        languages << qtText(nativeName(each));
    }
    m_language->setTexts(languages);
    m_language->setCurrentIndex(static_cast<int>(language));
    m_languageNote->setText(text(languageNoteText));

    name(m_appearanceRow, m_appearance, appearanceText);
    QStringList appearances;
    for (const TopTimerAppearance each : allCases<TopTimerAppearance>()) {
        appearances << qtText(title(each, language));
    }
    m_appearance->setTexts(appearances);
    m_appearance->setCurrentIndex(static_cast<int>(preferences.topTimerAppearance));
    m_appearanceNote->setText(text(appearanceNoteText));

    name(m_capsuleRow, m_capsule, capsuleText);
    m_capsule->setChecked(preferences.showTopCapsuleWhileRunning);
    m_capsuleNote->setText(text(capsuleNoteText));

    m_across->setTexts(
        {text(acrossText), text(percentText), text(decreaseAcrossText), text(increaseAcrossText)});
    m_down->setTexts({text(downText), text(percentText), text(decreaseDownText), text(increaseDownText)});
    m_placeNote->setText(text(placeNoteText));
    refreshPlace();

    const LaunchAtLoginStatus status = m_launchAtLogin.launchAtLoginStatus();
    name(m_launchRow, m_launch, launchText);
    m_launch->setChecked(status == LaunchAtLoginStatus::enabled);
    m_approvalRow->setVisible(status == LaunchAtLoginStatus::requiresApproval);
    m_approvalRow->setCaption(text(approvalText));
    m_openSettings->setText(text(openSettingsText));
}

} // namespace brevlin
