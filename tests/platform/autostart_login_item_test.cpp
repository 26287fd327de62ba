#include "platform/freedesktop/login/autostart_entry.h"
#include "platform/freedesktop/login/autostart_login_item.h"
#include "support/fake_document_thread.h"
#include "support/memory_durable_file.h"
#include "support/temporary_folder.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

namespace brevlin {
namespace {

using Status = LoginItem::Status;

TEST(AutostartEntry, says_whether_the_desktop_starts_it)
{
    for (const auto& [document, isEnabled] :
         {std::pair{"", std::optional<bool>{}},
          {"Exec=x\n", std::nullopt},
          {"[Desktop Entry]\nExec=x", true},
          {"[Desktop Entry]\nHidden=true\n", false},
          {"[Desktop Entry]\n Hidden = true \r\n", false},
          {"[Desktop Entry]\nHidden=false\n", true},
          {"[Desktop Entry]\n#Hidden=true\n", true},
          {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n", false},
          {"[Desktop Entry]\nExec=x\n[Desktop Action a]\nHidden=true\n", true}}) {
        const auto entry = parseAutostartEntry(document);
        EXPECT_EQ(entry ? std::optional{entry->isEnabled} : std::nullopt, isEnabled) << document;
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
    static bool changes(const std::function<void(const LoginItem::Completion&)>& change)
    {
        bool hasChanged = false;
        change([&](const Expected<void, std::string>& changed) { hasChanged = static_cast<bool>(changed); });
        return hasChanged;
    }

    test::MemoryDurableFile files;
    test::FakeDocumentThread thread;
    test::TemporaryFolder folder;
    std::string autostart = folder.path() + "/autostart";
    std::string entry = autostart + "/com.quillmark.Brevlin.desktop";
};

TEST_F(AutostartLoginItemTest, maps_what_lies_in_the_folder_to_the_four_states)
{
    AutostartLoginItem item(autostart, "/bin/sh", files, thread);
    EXPECT_EQ(item.status(), Status::notRegistered);
    ASSERT_TRUE(changes([&](const auto& done) { item.registerItem(done); }));
    EXPECT_EQ(item.status(), Status::enabled);
    files.files[entry] += "Hidden=true\n";
    EXPECT_EQ(item.status(), Status::requiresApproval);
    ASSERT_TRUE(changes([&](const auto& done) { item.unregisterItem(done); }));
    EXPECT_EQ(item.status(), Status::notRegistered);
    EXPECT_EQ(AutostartLoginItem(autostart, "/no/such/program", files, thread).status(), Status::notFound);
    files.failures.failFrom(1);
    EXPECT_FALSE(changes([&](const auto& done) { item.registerItem(done); }));
}

TEST_F(AutostartLoginItemTest,
       an_entry_names_what_was_registered_until_that_is_gone_and_one_switched_off_stays)
{
    AutostartLoginItem registered(autostart, "/bin/ls", files, thread);
    registered.registerItem([](const auto&) {});
    AutostartLoginItem after(autostart, "/bin/sh", files, thread);
    after.followProgram();
    EXPECT_EQ(parseAutostartEntry(files.files[entry])->command, "\"/bin/ls\"")
        << "a copy elsewhere was started";
    AutostartLoginItem before(autostart, "/old/place", files, thread);
    before.registerItem([](const auto&) {});
    after.followProgram();
    EXPECT_EQ(parseAutostartEntry(files.files[entry])->command, "\"/bin/sh\"");
    before.registerItem([](const auto&) {});
    files.files[entry] += "Hidden=true\n";
    const std::string switchedOff = files.files[entry];
    after.followProgram();
    EXPECT_EQ(files.files[entry], switchedOff);
}

TEST_F(AutostartLoginItemTest, hears_of_changes_by_others_also_before_the_folder_exists)
{
    AutostartLoginItem item(autostart, "/bin/sh", files, thread);
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
