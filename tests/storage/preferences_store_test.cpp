#include "storage/preferences_store.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

const std::string key(PreferencesStore::key);
const std::string full =
    R"({"timerSettings":{"focusDuration":1500,"shortBreakDuration":300,"longBreakDuration":900,)"
    R"("focusSessionsPerLongBreak":4,"autoStartBreaks":false,"autoStartFocus":false,)"
    R"("alertIntensity":"standard"},"showTopCapsuleWhileRunning":true,"playCompletionSound":true,)"
    R"("topTimerAppearance":"dark","appLanguage":"zh-Hans"})";

class PreferencesStoreTest : public testing::Test
{
protected:
    test::FakeDisk m_disk{
        test::FakeClock{instantFromUnixTime(Seconds{1'769'903'999.9})}}; // 2026-01-31 23:59:59.9 UTC
    test::MemoryUserDefaults& m_defaults = m_disk.defaults;
    PreferencesStore m_store{m_disk};
};

TEST_F(PreferencesStoreTest, the_first_start_gives_the_defaults_and_writes_nothing)
{
    EXPECT_EQ(m_store.load(), AppPreferences{});
    EXPECT_TRUE(m_defaults.values.empty());
    ASSERT_TRUE(m_store.save({}));
    EXPECT_EQ(m_defaults.values[key], full);
}

TEST_F(PreferencesStoreTest, every_choice_is_stored_under_its_key_comes_back_and_joins_others)
{
    AppPreferences chosen{{Seconds{61}, Seconds{62}, Seconds{63}, 5, true, false, AlertIntensity::strong},
                          false,
                          true,
                          TopTimerAppearance::light,
                          AppLanguage::english};
    ASSERT_TRUE(m_store.save(chosen));
    EXPECT_EQ(m_defaults.values[key],
              R"({"timerSettings":{"focusDuration":61,"shortBreakDuration":62,"longBreakDuration":63,)"
              R"("focusSessionsPerLongBreak":5,"autoStartBreaks":true,"autoStartFocus":false,)"
              R"("alertIntensity":"strong"},"showTopCapsuleWhileRunning":false,"playCompletionSound":true,)"
              R"("topTimerAppearance":"light","appLanguage":"english"})");
    EXPECT_EQ(PreferencesStore(m_disk).load(), chosen);
    AppPreferences others;
    others.timerSettings.autoStartFocus = true;
    others.playCompletionSound = false;
    ASSERT_TRUE(m_store.save(others));
    EXPECT_EQ(PreferencesStore(m_disk).load(), others);
    AppPreferences both = chosen;
    both.timerSettings.autoStartFocus = true;
    both.playCompletionSound = false;
    EXPECT_EQ(joined(chosen, {}, others), both);
    EXPECT_EQ(joined(others, {}, chosen), both);
}

TEST_F(PreferencesStoreTest, missing_and_null_keys_take_their_defaults)
{
    m_defaults.values[key] = R"({"appLanguage":"english","topTimerAppearance":null,"timerSettings":null})";
    AppPreferences expected;
    expected.appLanguage = AppLanguage::english;
    EXPECT_EQ(m_store.load(), expected);
}

TEST_F(PreferencesStoreTest, stored_timer_settings_are_sanitized)
{
    std::string document = full;
    document.replace(document.find("1500"), 4, "-5e0");
    document.replace(document.find("Break\":4"), 8, "Break\":0");
    m_defaults.values[key] = document;
    const TimerSettings settings = m_store.load().timerSettings;
    EXPECT_EQ(settings.focusDuration, Seconds{1.0});
    EXPECT_EQ(settings.focusSessionsPerLongBreak, 1);
    for (const std::string length : {"1500", "300", "900"}) {
        document = full;
        m_defaults.values[key] = document.replace(document.find(length), length.size(), "1e300");
        const TimerSettings held = m_store.load().timerSettings;
        EXPECT_LT(held.focusDuration + held.shortBreakDuration + held.longBreakDuration, Seconds{1e18});
    }
}

TEST_F(PreferencesStoreTest, one_bad_value_gives_all_defaults_and_the_document_is_kept)
{
    std::string incomplete = full;
    incomplete.replace(incomplete.find("autoStartFocus"), 14, "autoStartOther");
    for (const std::string& bad :
         {incomplete, std::string(R"({"appLanguage":"en","playCompletionSound":false})"),
          std::string(R"({"playCompletionSound":1})"), std::string("{\"appLangu")}) {
        m_defaults.values = {{key, bad}};
        EXPECT_EQ(m_store.load(), AppPreferences{}) << bad;
        EXPECT_EQ(m_defaults.values[key], bad);
        ASSERT_TRUE(m_store.save({}));
        ASSERT_TRUE(m_store.save({}));
        EXPECT_EQ(m_defaults.values, (std::map<std::string, std::string>{
                                         {key, full}, {key + ".unreadable-20260131T235959Z", bad}}));
    }
}

} // namespace
} // namespace brevlin
