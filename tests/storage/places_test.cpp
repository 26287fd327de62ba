#include "storage/capsule_position.h"
#include "storage/main_window_store.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

#include <utility>

namespace brevlin {
namespace {

const std::string position = "Brevlin.topPanel.position.v1";
const std::string section(MainWindowStore::sectionKey);
const std::string geometry(MainWindowStore::geometryKey);

/// The places of the capsule and of the main window.
class PlacesTest : public testing::Test, protected test::FakeDisk
{
protected:
    DocumentDisk disk() { return *this; }
    bool isAnyThere()
    {
        MainWindowStore window(disk());
        return CapsulePositionStore(disk()).load() || window.section() || window.geometry();
    }
};

TEST_F(PlacesTest, of_the_capsule_and_the_section_are_written_and_read_in_the_documented_form)
{
    EXPECT_FALSE(isAnyThere());
    CapsulePositionStore capsule(disk());
    const SavedPosition saved{4'294'967'295U, 0.5, 0.25, 5, HorizontalAnchor::center};
    ASSERT_TRUE(capsule.save(saved));
    EXPECT_EQ(
        defaults.values[position],
        R"({"displayID":4294967295,"xFraction":0.5,"yFraction":0.25,"version":5,"horizontalAnchor":"center"})");
    EXPECT_EQ(capsule.load(), saved);
    defaults.values[position] = R"({"displayID":0,"xFraction":1,"yFraction":0})";
    EXPECT_EQ(capsule.load(), (SavedPosition{0, 1, 0, std::nullopt, std::nullopt}));
    MainWindowStore window(disk());
    ASSERT_TRUE(window.saveSection("history"));
    EXPECT_EQ(defaults.values["com.quillmark.brevlin.mainSection"], "\"history\"");
    EXPECT_EQ(window.section(), "history");
    EXPECT_EQ(window.wasDark(), std::nullopt);
    for (const bool isDark : {true, false}) {
        ASSERT_TRUE(window.saveIsDark(isDark));
        EXPECT_EQ(window.wasDark(), isDark);
    }
    defaults.values[std::string(MainWindowStore::colorSchemeKey)] = "\"blue\"";
    EXPECT_EQ(window.wasDark(), std::nullopt);
}

TEST_F(PlacesTest, of_a_window_that_nobody_moved_have_a_size_alone)
{
    MainWindowStore window(disk());
    const WindowGeometry moved{WindowPlace{-40, 20}, 920, 650, true};
    ASSERT_TRUE(window.saveGeometry(moved));
    std::string& stored = defaults.values["com.quillmark.brevlin.mainWindow"];
    EXPECT_EQ(stored, R"({"x":-40,"y":20,"width":920,"height":650,"maximized":true})");
    EXPECT_EQ(window.geometry(), moved);
    const WindowGeometry unmoved{std::nullopt, 1, 100'000, false};
    ASSERT_TRUE(window.saveGeometry(unmoved));
    EXPECT_EQ(stored, R"({"width":1,"height":100000,"maximized":false})");
    EXPECT_EQ(window.geometry(), unmoved);
    for (const std::string half : {"x", "y"}) {
        stored = R"({"width":1,"height":100000,"maximized":false,")" + half + R"(":5})";
        EXPECT_EQ(window.geometry(), unmoved);
    }
}

TEST_F(PlacesTest, that_cannot_be_read_or_make_no_sense_count_as_absent_and_stay)
{
    for (const auto& [key, document] :
         {std::pair{position, ""},
          {position, "{}"},
          {position, R"({"xFraction":1})"},
          {position, R"({"xFraction":"1","yFraction":0})"},
          {position, R"({"displayID":-1,"xFraction":1,"yFraction":0})"},
          {position, R"({"displayID":4294967296,"xFraction":1,"yFraction":0})"},
          {position, R"({"xFraction":1,"yFraction":0,"horizontalAnchor":"middle"})"},
          {section, "history"},
          {geometry, R"({"x":0,"y":0,"width":0,"height":650,"maximized":true})"},
          {geometry, R"({"x":0,"y":1e9,"width":920,"height":650,"maximized":true})"},
          {geometry, R"({"x":0,"y":0,"width":920,"height":650})"},
          {geometry, "[]"},
          {geometry, ""}}) {
        defaults.values = {{key, document}};
        defaults.unreadable.clear();
        EXPECT_FALSE(isAnyThere()) << document;
        EXPECT_EQ(defaults.values[key], document);
        defaults.unreadable = {key};
        EXPECT_FALSE(isAnyThere()) << "and where the disk refuses it";
    }
}

} // namespace
} // namespace brevlin
