#include "app/model_fixture.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/form.h"
#include "ui/controls/key_recorder.h"
#include "ui/controls/link_button.h"
#include "ui/controls/number_stepper.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/switch_control.h"
#include "ui/controls/symbol_button.h"
#include "ui/screens/about/product.h"
#include "ui/screens/settings/app_settings_view.h"
#include "ui/screens/settings/clear_history_dialog.h"
#include "ui/screens/settings/settings_texts.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QTest>

namespace brevlin {
namespace {

class SettingsViewTest : public test::ModelTest
{
protected:
    AppSettingsView& open()
    {
        launch();
        view = std::make_unique<AppSettingsView>(model());
        view->resize(540, 560);
        view->show();
        QApplication::processEvents();
        return *view;
    }
    template <typename Control>
    Control* find(const QString& name)
    {
        for (Control* control : view->findChildren<Control*>()) {
            const auto* element = QAccessible::queryAccessibleInterface(control);
            if (!control->isHidden() && element->text(QAccessible::Name) == name) {
                return control;
            }
        }
        return nullptr;
    }
    template <typename Control>
    Control& get(const char* name)
    {
        auto* control = find<Control>(QString::fromUtf8(name));
        EXPECT_NE(control, nullptr) << name;
        return *control;
    }
    static void press(QWidget& widget, Qt::Key key) { QTest::keyClick(&widget, key); }

    std::unique_ptr<AppSettingsView> view;
};

TEST_F(SettingsViewTest, a_number_is_typed_or_stepped_and_stays_in_its_range)
{
    open();
    auto& focus = get<NumberField>("Focus duration: 25 min");
    focus.selectAll();
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_8, Qt::Key_0}) {
        press(focus, key);
    }
    EXPECT_EQ(stored().timerSettings.focusDuration, Seconds{1500}) << "it is still being typed";
    model().announcer().requestNotificationPermission(); // what the form shows changes
    model().setPlayCompletionSound(false);
    EXPECT_EQ(focus.text(), QStringLiteral("180")) << "what is typed stays";
    press(focus, Qt::Key_Return);
    EXPECT_EQ(stored().timerSettings.focusDuration, Seconds{10800});
    press(focus, Qt::Key_Up);
    EXPECT_EQ(stored().timerSettings.focusDuration, Seconds{10800});
    press(focus, Qt::Key_Down);
    EXPECT_EQ(stored().timerSettings.focusDuration, Seconds{10740});

    focus.selectAll();
    press(focus, Qt::Key_7);
    press(focus, Qt::Key_Escape);
    EXPECT_EQ(focus.text(), QStringLiteral("179"));

    auto& interval = get<NumberField>("Long break every 4 Pomodoros");
    for (int count = 0; count < 20; ++count) {
        press(interval, Qt::Key_Up);
    }
    EXPECT_EQ(stored().timerSettings.focusSessionsPerLongBreak, 12);
    for (int count = 0; count < 20; ++count) {
        press(interval, Qt::Key_Down);
    }
    EXPECT_EQ(stored().timerSettings.focusSessionsPerLongBreak, 1);
}

TEST_F(SettingsViewTest, a_stored_number_outside_the_range_is_shown_as_it_is)
{
    storePreferences([](AppPreferences& p) {
        p.timerSettings.focusDuration = Seconds{89};
        p.timerSettings.shortBreakDuration = Seconds{12000};
    });
    open();
    get<NumberField>("Focus duration: 1 min");
    press(get<NumberField>("Break: 200 min"), Qt::Key_Down);
    EXPECT_EQ(stored().timerSettings.shortBreakDuration, Seconds{10800});
}

TEST_F(SettingsViewTest, the_rows_of_the_services_follow_them)
{
    center.settings.state = NotificationAuthorizationState::denied;
    loginItem.afterRegistering = LoginItem::Status::requiresApproval;
    open();
    EXPECT_EQ(center.permissionRequests, 0);
    get<LinkButton>("Enable notifications").click();
    EXPECT_EQ(center.permissionRequests, 1);
    EXPECT_EQ(find<LinkButton>(QStringLiteral("Enable notifications")), nullptr);

    auto& launch = get<SwitchControl>("Launch at login");
    launch.click();
    EXPECT_FALSE(launch.isChecked()) << "it waits for approval";
    get<LinkButton>("Open System Settings").click();
    EXPECT_EQ(loginItem.openedSettings, 1);
    loginItem.current = LoginItem::Status::enabled;
    loginItem.changed();
    EXPECT_TRUE(launch.isChecked());
    loginItem.failure = "no space";
    launch.click();
    EXPECT_TRUE(launch.isChecked()) << "the change was refused";
    loginItem.failure.clear();
    auto& asks = get<SwitchControl>("Ask about time away");
    asks.click();
    EXPECT_FALSE(model().addedPreferences().asksAboutAbsences);
    auto& quiet = get<SwitchControl>("Silence notifications during focus");
    EXPECT_EQ(silencer.looks, 1) << "when it is to be seen";
    EXPECT_FALSE(quiet.isEnabled());
    EXPECT_EQ(quiet.accessibleDescription(),
              QStringLiteral("This desktop has no switch that a program can turn."));
    silencer.serverIs({{"dunst", NotificationSilencer::Lasts::whileServerRuns}});
    quiet.click();
    EXPECT_TRUE(model().addedPreferences().silencesNotifications);
    get<CapsuleButton>("Restore defaults").click();
    EXPECT_TRUE(asks.isChecked());
    EXPECT_FALSE(quiet.isChecked());
    EXPECT_EQ(loginItem.current, LoginItem::Status::enabled);
}

TEST_F(SettingsViewTest, the_history_is_cleared_only_where_the_question_is_answered_with_it)
{
    launchAndStart();
    scheduler.advance(Seconds{1500});
    open();
    auto& clear = get<CapsuleButton>("Clear all history");
    const auto dialog = [&] {
        clear.click();
        return view->window()->findChild<ClearHistoryDialog*>();
    };
    ClearHistoryDialog* question = dialog();
    EXPECT_EQ(question->focusWidget(), question->findChildren<CapsuleButton*>().last()) << "Return cancels";
    press(*question, Qt::Key_Escape);
    EXPECT_EQ(model().sessions().size(), 1U);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    dialog()->findChildren<CapsuleButton*>().first()->click();
    EXPECT_TRUE(model().sessions().empty());
    EXPECT_FALSE(clear.isEnabled());
}

class ShortcutsSectionTest : public SettingsViewTest
{
protected:
    /// As a keyboard does, where the scan code tells the key.
    static void type(KeyRecorder& recorder, Qt::KeyboardModifiers modifiers, char32_t scanCode,
                     Qt::Key key = Qt::Key_unknown)
    {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
        QApplication::sendEvent(&recorder, &press);
    }
    std::string text(ShortcutAction action)
    {
        const auto& key = model().addedPreferences().shortcutKeys[action];
        return key ? key->text() : "";
    }
    bool says(const char* words)
    {
        for (const FormLabel* label : view->findChildren<FormLabel*>()) {
            if (label->isVisible() && label->text().contains(QString::fromUtf8(words))) {
                return true;
            }
        }
        return false;
    }
};

TEST_F(ShortcutsSectionTest, a_key_is_recorded_refused_or_cleared_where_it_stands)
{
    open();
    EXPECT_EQ(shortcuts.log, "look ");
    auto& toggle = get<KeyRecorder>("Start or pause: None");
    type(toggle, Qt::ControlModifier, 'p');
    EXPECT_EQ(text(ShortcutAction::toggle), "") << "nobody has asked it to record";
    toggle.click();
    EXPECT_EQ(&get<KeyRecorder>("Start or pause: Press keys…"), &toggle);
    type(toggle, {}, 0, Qt::Key_Control);
    EXPECT_EQ(toggle.text(), QStringLiteral("Ctrl+")) << "what is held so far";
    type(toggle, Qt::ShiftModifier, 'p');
    EXPECT_TRUE(says("Hold Ctrl, Alt or Super with it."));
    type(toggle, Qt::ControlModifier, 0x4E2D);
    EXPECT_TRUE(says("This key cannot be used."));
    type(toggle, Qt::ControlModifier | Qt::MetaModifier, 'p', Qt::Key_Tab);
    EXPECT_EQ(text(ShortcutAction::toggle), "Ctrl+Super+P");
    EXPECT_FALSE(says("cannot be used"));
    EXPECT_FALSE(toggle.isRecording());

    auto& skip = get<KeyRecorder>("Skip to the next phase: None");
    toggle.click();
    QTest::mouseClick(&skip, Qt::LeftButton);
    EXPECT_FALSE(toggle.isRecording());
    type(skip, Qt::ControlModifier | Qt::MetaModifier, 'p');
    EXPECT_EQ(text(ShortcutAction::skip), "");
    EXPECT_TRUE(says("It is used for “Start or pause” already."));
    skip.click();
    EXPECT_FALSE(says("already"));
    type(skip, {}, 1, Qt::Key_F1);
    EXPECT_EQ(text(ShortcutAction::skip), "F1");
    skip.click();
    type(skip, {}, 0, Qt::Key_Escape);
    EXPECT_EQ(text(ShortcutAction::skip), "F1");
    skip.click();
    type(skip, {}, 0, Qt::Key_Backspace);
    EXPECT_EQ(text(ShortcutAction::skip), "");

    shortcuts.troubles[ShortcutAction::toggle] = GlobalShortcuts::Trouble::taken;
    shortcuts.observer.changed();
    EXPECT_TRUE(says("Another program has this key."));
    auto& clear = get<SymbolButton>("Clear: Start or pause");
    clear.click();
    EXPECT_EQ(text(ShortcutAction::toggle), "");
    EXPECT_FALSE(clear.isEnabled());
}

TEST_F(ShortcutsSectionTest, the_desktops_dialog_is_opened_and_its_words_are_shown)
{
    shortcuts.offered = GlobalShortcuts::Offer::dialog;
    open();
    EXPECT_EQ(find<KeyRecorder>(QStringLiteral("Start or pause: None")), nullptr);
    auto& dialog = get<CapsuleButton>("Set up…");
    dialog.click();
    shortcuts.observer.changed();
    EXPECT_FALSE(dialog.isEnabled()) << "it is open";
    shortcuts.isOpen = false;
    shortcuts.triggers[ShortcutAction::show] = "Press <Super>b";
    shortcuts.observer.bound();
    get<FormLabel>("Show the window: Press <Super>b");
    EXPECT_EQ(&get<CapsuleButton>("Change…"), &dialog);
    shortcuts.hasFailed = true;
    shortcuts.observer.changed();
    EXPECT_TRUE(says("did not open"));
}

TEST_F(ShortcutsSectionTest, commands_are_copied_where_no_key_can_be_heard)
{
    shortcuts.offered = GlobalShortcuts::Offer::commands;
    open();
    get<LinkButton>("Copy: brevlin extend").click();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("brevlin extend"));
    get<LinkButton>("Copied: brevlin extend");
    EXPECT_TRUE(says("bindsym $mod+p exec brevlin toggle"));
}

TEST(SettingsTexts, a_strong_alert_is_weakened_only_while_it_is_chosen)
{
    NotificationAuthorizationSnapshot authorization;
    EXPECT_TRUE(strongAlertIsWeakened(AlertIntensity::strong, authorization));
    EXPECT_FALSE(strongAlertIsWeakened(AlertIntensity::standard, authorization));
    authorization.timeSensitiveEnabled = true;
    EXPECT_FALSE(strongAlertIsWeakened(AlertIntensity::strong, authorization));
}

TEST(ProductVersion, is_told_with_what_is_known_of_the_build)
{
    EXPECT_EQ(versionText({"1.2", "45"}, AppLanguage::english), "1.2 (45)");
    EXPECT_EQ(versionText({"1.2", std::nullopt}, AppLanguage::english), "1.2");
    EXPECT_EQ(versionText({std::nullopt, "45"}, AppLanguage::english), "Development build");
    EXPECT_EQ(versionText({}, AppLanguage::simplifiedChinese), "开发版本");
}

} // namespace
} // namespace brevlin
