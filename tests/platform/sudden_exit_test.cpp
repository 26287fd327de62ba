#include "platform/freedesktop/event_loop/sudden_exit.h"

#include <QtGlobal>

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace brevlin {
namespace {

constexpr int code = 7;

void say()
{
    std::fputs("the last word\n", stderr);
}

TEST(SuddenExitDeathTest, the_last_word_is_said_whichever_way_a_library_leaves)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const SuddenExit word(say);
            std::exit(code);
        },
        ::testing::ExitedWithCode(code), "the last word");
    EXPECT_EXIT(
        {
            const SuddenExit word(say);
            qWarning("The Wayland connection broke. Did the Wayland compositor die?");
            _exit(code);
        },
        ::testing::ExitedWithCode(code), "compositor die.\nthe last word");
    EXPECT_EXIT(
        {
            setenv("QT_WAYLAND_RECONNECT", "1", 1);
            const SuddenExit word(say);
            qWarning("The Wayland connection broke. Did the Wayland compositor die?");
            qWarning("It is back.");
            _exit(code);
        },
        ::testing::ExitedWithCode(code), "die.\nIt is back.");
    EXPECT_EXIT(
        {
            {
                const SuddenExit word(say);
                qWarning("something else");
            }
            qWarning("The Wayland connection broke.");
            std::exit(code);
        },
        ::testing::ExitedWithCode(code), "^something else\nThe Wayland connection broke.\n$");
}

} // namespace
} // namespace brevlin
