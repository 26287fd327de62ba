#include "storage/main_window_store.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(MainWindowStore, remembers_the_section_as_a_json_string)
{
    test::FakeDisk disk;
    auto& defaults = disk.defaults;
    MainWindowStore store(disk);
    EXPECT_EQ(store.section(), std::nullopt);
    ASSERT_TRUE(store.saveSection("history"));
    EXPECT_EQ(defaults.values["com.quillmark.brevlin.mainSection"], "\"history\"");
    EXPECT_EQ(store.section(), "history");
    defaults.values["com.quillmark.brevlin.mainSection"] = "history";
    EXPECT_EQ(store.section(), std::nullopt);
    defaults.unreadable = {std::string(MainWindowStore::sectionKey),
                           std::string(MainWindowStore::geometryKey)};
    EXPECT_EQ(MainWindowStore(disk).section(), std::nullopt);
    EXPECT_EQ(MainWindowStore(disk).geometry(), std::nullopt);
}

TEST(MainWindowStore, gives_no_geometry_that_makes_no_sense)
{
    test::FakeDisk disk;
    auto& defaults = disk.defaults;
    MainWindowStore store(disk);
    const WindowGeometry geometry{WindowPlace{-40, 20}, 920, 650, true};
    ASSERT_TRUE(store.saveGeometry(geometry));
    std::string& stored = defaults.values["com.quillmark.brevlin.mainWindow"];
    EXPECT_EQ(stored, R"({"x":-40,"y":20,"width":920,"height":650,"maximized":true})");
    EXPECT_EQ(store.geometry(), geometry);
    const WindowGeometry unmoved{std::nullopt, 1, 100'000, false};
    ASSERT_TRUE(store.saveGeometry(unmoved));
    EXPECT_EQ(stored, R"({"width":1,"height":100000,"maximized":false})");
    EXPECT_EQ(store.geometry(), unmoved);
    for (const std::string half : {"x", "y"}) {
        stored = R"({"width":1,"height":100000,"maximized":false,")" + half + R"(":5})";
        EXPECT_EQ(store.geometry(), unmoved);
    }
    for (const char* bad : {R"({"x":0,"y":0,"width":0,"height":650,"maximized":true})",
                            R"({"x":0,"y":1e9,"width":920,"height":650,"maximized":true})",
                            R"({"x":0,"y":0,"width":920,"height":650})", "[]", ""}) {
        stored = bad;
        EXPECT_EQ(store.geometry(), std::nullopt) << bad;
    }
}

} // namespace
} // namespace brevlin
