#include "storage/added_preferences.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

const std::string key(AddedPreferencesStore::key);

TEST(AddedPreferences, come_back_with_their_keys_and_leave_what_is_unknown)
{
    test::FakeDisk disk;
    disk.defaults.values[key] = R"({"later":{"a":[1,"\"é"]},"skipShortcut":"Ctrl+Alt+S","\"\n":null})";
    AddedPreferencesStore store(disk);
    AddedPreferences preferences = store.load();
    EXPECT_TRUE(preferences.asksAboutAbsences);
    EXPECT_EQ(preferences.shortcutKeys[ShortcutAction::skip], KeyCombination::fromText("Ctrl+Alt+S"));
    EXPECT_FALSE(preferences.shortcutKeys[ShortcutAction::toggle]);

    preferences.shortcutKeys[ShortcutAction::skip].reset();
    preferences.shortcutKeys[ShortcutAction::toggle] = KeyCombination::fromText("Super+\"");
    preferences.silencesNotifications = true;
    preferences.hasBoundShortcutsOnce = true;
    ASSERT_TRUE(store.save(preferences));
    EXPECT_EQ(disk.defaults.values[key],
              R"({"asksAboutAbsences":true,"silencesNotifications":true,"hasBoundShortcutsOnce":true,)"
              R"("toggleShortcut":"Super+\"",)"
              R"("later":{"a":[1,"\"é"]},"\"\n":null})");
    EXPECT_EQ(AddedPreferencesStore(disk).load(), preferences);
}

TEST(AddedPreferences, a_key_that_is_none_makes_the_document_unreadable)
{
    for (const char* bad :
         {R"({"toggleShortcut":"P"})", R"({"toggleShortcut":7})", R"({"showShortcut":""})"}) {
        EXPECT_FALSE(decodeAddedPreferences(bad)) << bad;
    }
    EXPECT_TRUE(decodeAddedPreferences(R"({"toggleShortcut":null})"));
}

} // namespace
} // namespace brevlin
