#include "platform/notification_center_fixture.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST_F(NotificationCenterTest, authorization_is_known_once_a_server_has_answered)
{
    EXPECT_EQ(state(), State::authorized);
    makeCenter(false, false);
    EXPECT_EQ(state(), State::denied);

    makeCenter(true);
    std::vector<State> read;
    int changes = 0;
    center->setSettingsChangeHandler([&] { ++changes; });
    center->readSettings([&](const auto& settings) { read.push_back(settings.state); });
    EXPECT_TRUE(read.empty());
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(read, std::vector<State>{State::unknown}) << "nobody waits longer";
    server->recover();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(state(), State::authorized);

    makeCenter(true);
    center->setSettingsChangeHandler([&] { ++changes; });
    server->recover();
    EXPECT_EQ(changes, 2) << "asked without being asked to";

    makeCenter(true);
    server->isReplaced();
    server->isRunning = false;
    server->recover();
    EXPECT_EQ(state(), State::authorized) << "of the one that took over";
}

TEST_F(NotificationCenterTest, a_server_that_does_not_answer_is_a_failure_of_whoever_needs_it)
{
    add("A");
    EXPECT_EQ(confirmations, std::vector<std::string>{"added"});
    server->hangs = true;
    add("A");
    scheduler.advance(Seconds{4.9});
    EXPECT_EQ(confirmations.size(), 1U);
    scheduler.advance(Seconds{0.1});
    EXPECT_EQ(confirmations.back(), "Connection timed out");
    server->recover();
    EXPECT_EQ(confirmations.size(), 2U);
    scheduler.advance(Seconds{5.0});
    EXPECT_EQ(server->screen.size(), 1U) << "and yet it tries";

    server->die();
    std::string error;
    center->requestAuthorization([&](const auto& granted) { error = granted ? "" : granted.error(); });
    EXPECT_EQ(error, "no server");
}

TEST_F(NotificationCenterTest, settings_tell_what_the_server_and_the_user_let_through)
{
    EXPECT_EQ(settings(), (NotificationAuthorizationSnapshot{State::authorized, true, true, true}));
    server->observer.doNotDisturbChanged(true);
    EXPECT_EQ(settings(), (NotificationAuthorizationSnapshot{State::authorized, false, true, true}));
    server->die();
    EXPECT_EQ(settings(), (NotificationAuthorizationSnapshot{State::denied, false, false, false}));
    server->capabilities.erase("sound");
    server->startAgain();
    EXPECT_EQ(settings(), (NotificationAuthorizationSnapshot{State::authorized, true, false, true}));
}

} // namespace
} // namespace brevlin
