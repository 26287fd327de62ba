#include "platform/freedesktop/login/autostart_entry.h"
#include "platform/freedesktop/login/autostart_login_item.h"
#include "support/memory_durable_file.h"
#include "support/temporary_folder.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace brevlin {
namespace {

using Status = LoginItem::Status;

TEST(AutostartEntry, says_whether_the_desktop_starts_it)
{
    struct Case
    {
        const char* document;
        std::optional<bool> isEnabled;
    };
    for (const Case& c : {Case{"", std::nullopt},
                          {"Exec=x\n", std::nullopt},
                          {"[Desktop Entry]\nExec=x", true},
                          {"[Desktop Entry]\nHidden=true\n", false},
                          {"[Desktop Entry]\n Hidden = true \r\n", false},
                          {"[Desktop Entry]\nHidden=false\n", true},
                          {"[Desktop Entry]\n#Hidden=true\n", true},
                          {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n", false},
                          {"[Desktop Entry]\nExec=x\n[Desktop Action a]\nHidden=true\n", true}}) {
        const auto entry = parseAutostartEntry(c.document);
        EXPECT_EQ(entry ? std::optional{entry->isEnabled} : std::nullopt, c.isEnabled) << c.document;
    }
}

TEST(AutostartEntry, starts_a_program_of_any_name)
{
    EXPECT_EQ(execValue("/usr/bin/brevlin"), "\"/usr/bin/brevlin\"");
    EXPECT_EQ(execValue("/home/a b/50% \"$x\"`\\brevlin"), R"("/home/a b/50%% \\"\\$x\\"\\`\\\\brevlin")");
    for (const std::string program : {"/usr/bin/brevlin", "/home/a b/50% \"$x\"`\\brevlin", "brevlin"}) {
        EXPECT_EQ(execProgram(execValue(program)), program);
    }
    EXPECT_EQ(execProgram("brevlin --hidden"), "brevlin");
    const std::string entry = makeAutostartEntry("/opt/brevlin");
    EXPECT_EQ(parseAutostartEntry(entry)->command, "\"/opt/brevlin\"");
    EXPECT_TRUE(parseAutostartEntry(entry)->isEnabled);
    EXPECT_EQ(withCommand("[Desktop Entry]\nExec=old\nHidden=false\n[Other]\nExec=kept\n", "new"),
              "[Desktop Entry]\nExec=new\nHidden=false\n[Other]\nExec=kept\n");
}

class AutostartLoginItemTest : public ::testing::Test
{
protected:
    test::MemoryDurableFile files;
    test::TemporaryFolder folder;
    std::string autostart = folder.path() + "/autostart";
    std::string entry = autostart + "/com.quillmark.Brevlin.desktop";
};

TEST_F(AutostartLoginItemTest, maps_what_lies_in_the_folder_to_the_four_states)
{
    AutostartLoginItem item(autostart, "/bin/sh", files);
    EXPECT_EQ(item.status(), Status::notRegistered);
    ASSERT_TRUE(item.registerItem());
    EXPECT_EQ(item.status(), Status::enabled);
    files.files[entry] += "Hidden=true\n";
    EXPECT_EQ(item.status(), Status::requiresApproval);
    ASSERT_TRUE(item.unregisterItem());
    EXPECT_EQ(item.status(), Status::notRegistered);
    EXPECT_EQ(AutostartLoginItem(autostart, "/no/such/program", files).status(), Status::notFound);
    files.failures.failFrom(1);
    EXPECT_FALSE(item.registerItem());
}

TEST_F(AutostartLoginItemTest,
       an_entry_names_what_was_registered_until_that_is_gone_and_one_switched_off_stays)
{
    AutostartLoginItem registered(autostart, "/bin/ls", files);
    ASSERT_TRUE(registered.registerItem());
    AutostartLoginItem after(autostart, "/bin/sh", files);
    after.followProgram();
    EXPECT_EQ(parseAutostartEntry(files.files[entry])->command, "\"/bin/ls\"")
        << "a copy elsewhere was started";
    AutostartLoginItem before(autostart, "/old/place", files);
    ASSERT_TRUE(before.registerItem());
    after.followProgram();
    EXPECT_EQ(parseAutostartEntry(files.files[entry])->command, "\"/bin/sh\"");
    ASSERT_TRUE(before.registerItem());
    files.files[entry] += "Hidden=true\n";
    const std::string switchedOff = files.files[entry];
    after.followProgram();
    EXPECT_EQ(files.files[entry], switchedOff);
}

TEST_F(AutostartLoginItemTest, hears_of_changes_by_others_also_before_the_folder_exists)
{
    AutostartLoginItem item(autostart, "/bin/sh", files);
    int changes = 0;
    QEventLoop loop;
    item.setChangeHandler([&] {
        ++changes;
        loop.quit();
    });
    const auto waitForChange = [&] {
        QTimer::singleShot(std::chrono::seconds{10}, &loop, [&] { loop.exit(1); });
        return loop.exec() == 0;
    };
    std::filesystem::create_directory(autostart);
    EXPECT_TRUE(waitForChange());
    std::ofstream(entry) << "[Desktop Entry]\n";
    EXPECT_TRUE(waitForChange());
    std::filesystem::remove(entry);
    EXPECT_TRUE(waitForChange());
    EXPECT_GE(changes, 3);
}

} // namespace
} // namespace brevlin
