#include "services/alert_sound_service.h"
#include "support/fake_desktop.h"
#include "support/fake_task_scheduler.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

using Log = std::vector<std::string>;
using States = std::vector<bool>;

class AlertSoundServiceTest : public ::testing::Test
{
protected:
    AlertSoundServiceTest()
    {
        service.setPlaybackStateHandler([this](bool playing) { states.push_back(playing); });
    }

    test::FakeClock clock;
    test::FakeTaskScheduler scheduler{clock};
    test::FakeSoundPlayer player;
    AlertSoundService service{player, scheduler};
    States states;
};

TEST_F(AlertSoundServiceTest, a_strong_alert_repeats_for_a_minute_until_it_is_stopped_or_replaced)
{
    EXPECT_TRUE(service.play(AlertIntensity::strong, "Glass"));
    scheduler.advance(Seconds{59.9});
    EXPECT_EQ(states, (States{false, true}));
    scheduler.advance(Seconds{0.2});
    EXPECT_EQ(states, (States{false, true, false}));
    EXPECT_EQ(player.log, (Log{"loop Glass", "stop Glass"}));
    service.stop();
    EXPECT_EQ(player.log.size(), 2U);
    EXPECT_EQ(states.size(), 4U) << "a stop in silence is reported as well";

    states.clear();
    service.play(AlertIntensity::strong, "Glass");
    scheduler.advance(Seconds{10});
    service.stop();
    scheduler.advance(Seconds{100});
    EXPECT_EQ(states, (States{false, true, false})) << "nothing is left for the sixtieth second";

    service.play(AlertIntensity::strong, "Glass");
    scheduler.advance(Seconds{50});
    service.play(AlertIntensity::strong, "Glass");
    scheduler.advance(Seconds{50});
    EXPECT_TRUE(states.back());
    EXPECT_EQ(scheduler.pendingCount(), 1U) << "the limit of the new one";
}

TEST_F(AlertSoundServiceTest, a_single_sound_ends_by_itself)
{
    service.play(AlertIntensity::standard, "Glass");
    player.finish();
    EXPECT_EQ(states, (States{false, true, false}));
    EXPECT_EQ(player.log, Log{"play Glass"});
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(AlertSoundServiceTest, falls_back_to_ping_and_then_to_the_bell)
{
    EXPECT_TRUE(service.play(AlertIntensity::gentle, "No such sound"));
    EXPECT_EQ(player.log.back(), "play Ping");
    player.names.clear();
    EXPECT_FALSE(service.play(AlertIntensity::gentle, "Glass"));
    EXPECT_EQ(player.log.back(), "beep");
    EXPECT_FALSE(states.back());
}

TEST_F(AlertSoundServiceTest, a_sound_that_is_not_heard_is_given_up_silently_and_the_next_one_is_tried)
{
    player.hasHungServer = true;
    service.play(AlertIntensity::strong, "Glass");
    player.finish(); // there is no server at all
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    service.play(AlertIntensity::strong, "Glass");
    scheduler.advance(Seconds{2.1});
    EXPECT_EQ(states, (States{false, false})) << "each play() begins with silence";
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    player.hasHungServer = false;
    service.play(AlertIntensity::standard, "Glass");
    EXPECT_TRUE(states.back());
}

} // namespace
} // namespace brevlin
