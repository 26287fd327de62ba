#include "platform/freedesktop/hooks/folder_hook_programs.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace brevlin::test {
namespace {

using namespace std::chrono_literals;
using Kind = HookResult::Kind;

/// With a second in place of half a minute.
class HookProgramsTest : public ::testing::Test
{
protected:
    void add(const std::string& name, const std::string& script, mode_t mode = 0700)
    {
        std::ofstream(path(name)) << "#!/bin/sh\n" << script << '\n';
        ::chmod(path(name).c_str(), mode);
    }
    std::string path(const std::string& name) const { return folder.path() + "/" + name; }
    std::string content(const std::string& name) const
    {
        std::ifstream file(path(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Killed, it may still be there for somebody to wait for.
    static bool isRunning(int process)
    {
        std::ifstream status("/proc/" + std::to_string(process) + "/stat");
        std::string identifier;
        std::string name;
        std::string state;
        return bool(status >> identifier >> name >> state) && state != "Z" && state != "X";
    }
    static void expectEnds(int process)
    {
        const auto deadline = std::chrono::steady_clock::now() + 5s;
        while (isRunning(process) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
        EXPECT_FALSE(isRunning(process));
    }
    HookResult only()
    {
        const auto results = programs.run(call);
        EXPECT_EQ(results.size(), 1);
        return results.empty() ? HookResult{} : results.front();
    }

    TemporaryFolder folder;
    HookCall call{HookEvent::phaseEnded, {{"BREVLIN_INTENTION", "a \"b\" $(c)\n&"}}, "{\"x\":1}\n"};
    FolderHookPrograms programs{folder.path(), {500ms, 300ms, 200ms, 100}};
};

TEST_F(HookProgramsTest, run_in_the_order_of_their_names_with_what_they_are_told_and_their_ends_are_kept)
{
    add("20-fails", "echo no lamp >&2; exit 3");
    add("10-reads", "printf '%s|' \"$BREVLIN_INTENTION\"; cat; pwd >/dev/null");
    add("30-signal", "kill -9 $$");
    add("40-flood", "yes flood | head -c 1000000; echo the end");
    ::mkdir(path("a-folder").c_str(), 0700);
    add(".hidden", "exit 1");
    add("backup~", "exit 1");
    add("README", "exit 1", 0600);
    std::ofstream(path("50-no-interpreter")) << "#!/nowhere\n";
    ::chmod(path("50-no-interpreter").c_str(), 0700);
    const auto results = programs.run(call);
    ASSERT_EQ(results.size(), 5);
    EXPECT_EQ(results[0],
              (HookResult{"10-reads", HookEvent::phaseEnded, Kind::done, 0, "a \"b\" $(c)\n&|{\"x\":1}\n"}));
    EXPECT_EQ(results[1], (HookResult{"20-fails", HookEvent::phaseEnded, Kind::failed, 3, "no lamp\n"}));
    EXPECT_EQ(results[2].code, 128 + SIGKILL);
    EXPECT_EQ(results[3].kind, Kind::done);
    EXPECT_EQ(results[3].output.size(), 100);
    EXPECT_TRUE(results[3].output.ends_with("the end\n"));
    EXPECT_EQ(results[4].kind, Kind::notStarted);
    EXPECT_NE(results[4].output, "");
}

TEST_F(HookProgramsTest, that_take_too_long_are_ended_with_their_children_though_they_do_not_want_to)
{
    add("hangs", "trap '' TERM; sh -c 'trap \"\" TERM; echo $$; sleep 60' & sleep 60 & wait; sleep 60");
    const HookResult result = only();
    EXPECT_EQ(result.kind, Kind::tookTooLong);
    const int child = std::stoi(result.output);
    expectEnds(child);
}

TEST_F(HookProgramsTest, are_asked_before_they_are_killed_and_take_along_who_does_not_heed_it)
{
    add("hangs", "trap 'echo bye; exit 0' TERM; sh -c 'trap \"\" TERM; echo $$; sleep 60' & while :; do "
                 "sleep 0.01; done");
    const HookResult result = only();
    EXPECT_EQ(result.kind, Kind::tookTooLong);
    EXPECT_TRUE(result.output.ends_with("bye\n"))
        << result.output; // after what the shell says of the sleeper
    expectEnds(std::stoi(result.output));
}

TEST_F(HookProgramsTest, may_leave_something_running_that_nobody_waits_for)
{
    add("forks", "(sleep 60; echo late) & echo $! ; exit 0");
    const HookResult result = only();
    EXPECT_EQ(result.kind, Kind::done);
    const int child = std::stoi(result.output);
    EXPECT_EQ(::kill(child, SIGKILL), 0);
}

TEST_F(HookProgramsTest, that_others_could_have_written_do_not_run)
{
    add("shared", "echo ran", 0720);
    EXPECT_EQ(only(), (HookResult{"shared", HookEvent::phaseEnded, Kind::unsafe, 0, ""}));
    ::chmod(path("shared").c_str(), 0700);
    EXPECT_EQ(only().kind, Kind::done);
    ::chmod(folder.path().c_str(), 0777);
    EXPECT_EQ(only().kind, Kind::unsafe);
    ::chmod(folder.path().c_str(), 0700);
}

TEST_F(HookProgramsTest, have_a_moment_left_when_the_program_ends_and_none_starts_then)
{
    FolderHookPrograms patient{folder.path(), {60s, 60s, 100ms, 100}};
    add("1-hangs", "touch \"$0.ran\"; sleep 60");
    add("2-next", "touch \"$0.ran\"");
    std::vector<HookResult> results;
    std::thread thread([&] { results = patient.run(call); });
    while (!std::filesystem::exists(path("1-hangs.ran"))) {
        std::this_thread::yield();
    }
    patient.hurry();
    thread.join();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results.front().kind, Kind::tookTooLong);
    EXPECT_FALSE(std::filesystem::exists(path("2-next.ran")));
    EXPECT_TRUE(FolderHookPrograms("/nowhere").run(call).empty());
}

} // namespace
} // namespace brevlin::test
