#include "platform/notification_center_fixture.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST_F(NotificationCenterTest, shows_at_the_instant_and_not_before)
{
    add("A", Seconds{1500.25});
    EXPECT_EQ(shownAfter(1500.2), 0);
    EXPECT_EQ(shownAfter(0.05), 1);
    add("later", Seconds{30.5});
    add("sooner", Seconds{20.0});
    add("withdrawn", Seconds{10.0});
    EXPECT_EQ(shownAfter(9.999), 1);
    withdraw("withdrawn");
    EXPECT_EQ(shownAfter(10.001), 2);
    EXPECT_EQ(banner().title, "Focus complete");
    EXPECT_EQ(banner().urgency, NotificationUrgency::normal);
    const std::vector<NotificationAction> actions{{"default", ""}, {"next", "Next"}, {"stop", "Stop"}};
    EXPECT_EQ(banner().actions, actions);
}

TEST_F(NotificationCenterTest, the_instant_is_of_the_wall_clock)
{
    add("A", Seconds{600.0});
    clock.jump(Seconds{599.0}); // asleep
    EXPECT_EQ(shownAfter(0.9), 0);
    EXPECT_EQ(shownAfter(0.2), 1) << "right after waking";
    add("B", Seconds{10.0});
    clock.jump(Seconds{-60.0});
    EXPECT_EQ(shownAfter(69.0), 1);
    EXPECT_EQ(shownAfter(1.0), 2);
}

TEST_F(NotificationCenterTest, appears_exactly_once_whether_timer_or_transition_comes_first)
{
    for (const bool transitionFirst : {false, true}) {
        makeCenter();
        const NotificationRequest made = request("A");
        clock.jump(Seconds{0.03}); // no time is lost on the way of the request
        center->add(made, [](const auto&) {});
        transitionFirst ? clock.jump(Seconds{9.97}) : scheduler.advance(Seconds{9.97});
        withdraw("A");
        EXPECT_EQ(shownAfter(10.0), 1);
        EXPECT_EQ(server->screen.size(), 1U) << "the transition that it announces leaves it there";
    }
}

TEST_F(NotificationCenterTest, an_announcement_goes_when_it_is_outdated)
{
    struct Case
    {
        const char* what;
        std::function<void()> happens;
        std::size_t left;
    };
    const std::vector<Case> cases{
        {"the user went on", [this] { center->removeAllDelivered(); }, 0},
        {"it was withdrawn once more", [this] { withdraw("A"); }, 0},
        {"its run is scheduled again", [this] { add("A"); }, 0},
        {"another phase was withdrawn", [this] { withdraw("B"); }, 1},
        {"the next phase started by itself", [this] { add("B"); }, 1},
        {"a day passed", [this] { scheduler.advance(Seconds{86'400.0}); }, 1},
    };
    for (const Case& c : cases) {
        makeCenter();
        announce("A");
        c.happens();
        EXPECT_EQ(server->screen.size(), c.left) << c.what;
    }
}

TEST_F(NotificationCenterTest, the_next_announcement_takes_the_place_of_the_last)
{
    for (const bool replaces : {true, false}) {
        makeCenter();
        server->replaces = replaces;
        announce("A");
        announce("B"); // alone on the screen
        EXPECT_EQ(server->lastId, replaces ? 1U : 2U);
        server->act("next");
        EXPECT_EQ(responses.back(), "next of B");
    }
}

TEST_F(NotificationCenterTest,
       an_announcement_is_quiet_where_it_would_cover_the_island_and_the_desktop_lists_it)
{
    const BannerPlace listing{BannerPlace::Position::topCentre, 520, 190, true};
    const BannerPlace showing{BannerPlace::Position::topRight, 460, 130, false};
    struct Case
    {
        std::optional<BannerPlace> place;
        bool islandStandsThere;
        bool timeSensitive;
        NotificationUrgency urgency;
    };
    for (const Case& c : {Case{listing, true, false, NotificationUrgency::low},
                          {listing, true, true, NotificationUrgency::low},
                          {listing, false, true, NotificationUrgency::critical},
                          {showing, true, false, NotificationUrgency::normal},
                          {{}, true, true, NotificationUrgency::critical}}) {
        makeCenter();
        std::optional<BannerPlace> told;
        center->setBannerPlaceHandler([&](const std::optional<BannerPlace>& place) { told = place; });
        center->setBannerObstacle([&](const BannerPlace&) { return c.islandStandsThere; });
        server->observer.bannerPlaceChanged(c.place);
        EXPECT_EQ(told, c.place);
        NotificationRequest ended = request("A");
        ended.timeSensitive = c.timeSensitive;
        center->add(ended, [](const auto&) {});
        scheduler.advance(Seconds{10.0});
        EXPECT_EQ(banner().urgency, c.urgency);
    }
}

TEST_F(NotificationCenterTest, a_reaction_acts_once_and_ends_the_announcement)
{
    announce("A");
    server->act("default", " with a token");
    server->act("default");
    server->act("next");
    EXPECT_EQ(responses, std::vector<std::string>{"default of A with a token"});
    EXPECT_TRUE(server->screen.empty()) << "also where the server does not close it by itself";
    EXPECT_EQ(center->activationToken(), "");

    announce("B");
    server->dismiss();
    server->act("stop");
    EXPECT_EQ(responses.back(), "dismiss of B");
    EXPECT_EQ(responses.size(), 2U);

    announce("C");
    server->observer.closed(server->lastId, NotificationServer::CloseReason::expired);
    server->observer.actionInvoked(99, "next"); // of another program
    EXPECT_EQ(responses.size(), 2U);
}

TEST_F(NotificationCenterTest, texts_are_shown_as_typed_with_and_without_markup)
{
    announce("A");
    EXPECT_EQ(banner().body, "“&lt;b&gt;&amp;\"” is complete.");
    server->die();
    server->capabilities = {"body"};
    server->startAgain();
    EXPECT_EQ(banner().body, "“<b>&\"” is complete.");
    EXPECT_TRUE(banner().actions.empty()) << "the server has none";
}

TEST_F(NotificationCenterTest, new_titles_of_buttons_reach_the_announcement_on_the_screen)
{
    announce("A");
    center->setCategories({{"ended", {{"next", "下一个"}}, {}}});
    ASSERT_EQ(server->screen.size(), 1U);
    EXPECT_EQ(banner().actions.back().title, "下一个");
    EXPECT_TRUE(banner().isSilent);
    center->removeAllDelivered();
    center->setCategories({});
    EXPECT_TRUE(server->screen.empty());
}

TEST_F(NotificationCenterTest, nothing_is_lost_with_the_server)
{
    add("A", Seconds{10.0});
    add("B", Seconds{20.0});
    server->die();
    EXPECT_EQ(state(), State::denied);
    scheduler.advance(Seconds{15.0});
    withdraw("A");
    server->startAgain();
    EXPECT_EQ(state(), State::authorized);
    EXPECT_EQ(server->screen.size(), 1U) << "what was due meanwhile";
    scheduler.advance(Seconds{5.0});
    server->act("next");
    EXPECT_EQ(responses, std::vector<std::string>{"next of B"});
}

TEST_F(NotificationCenterTest, a_server_that_comes_to_itself_shows_only_what_still_counts)
{
    add("A");
    server->hangs = true;
    scheduler.advance(Seconds{10.0});
    withdraw("A");
    center->removeAllDelivered();
    server->recover();
    EXPECT_TRUE(server->screen.empty());

    server->hangs = true;
    add("B");
    scheduler.advance(Seconds{10.0});
    add("C");
    scheduler.advance(Seconds{10.0});
    server->recover();
    ASSERT_EQ(server->screen.size(), 1U);
    server->act("next");
    EXPECT_EQ(responses, std::vector<std::string>{"next of C"});

    server->hangs = true;
    add("D");
    scheduler.advance(Seconds{10.0});
    server->isReplaced();
    ASSERT_EQ(server->screen.size(), 1U) << "one that takes over from a hung one";
    const std::uint32_t id = server->lastId;
    server->recover();
    server->observer.actionInvoked(id, "stop");
    EXPECT_EQ(responses.back(), "stop of D") << "what the hung one says at last is void";
}

TEST_F(NotificationCenterTest, what_is_shown_anew_waits_at_the_gate_unless_it_is_outdated)
{
    std::function<void()> first;
    std::function<void()> latest;
    center->setGate([&](std::function<void()> show) { first = std::exchange(latest, std::move(show)); });
    add("A");
    scheduler.advance(Seconds{10.0});
    add("B");
    scheduler.advance(Seconds{10.0});
    first();
    EXPECT_EQ(server->shown, 0) << "another one has come";
    latest();
    EXPECT_EQ(server->shown, 1);
    server->die();
    server->startAgain();
    EXPECT_EQ(server->shown, 1);
    latest();
    EXPECT_EQ(server->shown, 2);
    add("C");
    scheduler.advance(Seconds{10.0});
    center->removeAllDelivered();
    latest();
    EXPECT_EQ(server->shown, 2) << "it was withdrawn meanwhile";
    center->setOwnSilence(true);
    EXPECT_TRUE(server->ownSilence);
}

TEST_F(NotificationCenterTest, showing_something_may_start_the_server)
{
    add("A");
    server->screen.clear();
    server->observer.vanished(); // and the bus can start it
    EXPECT_EQ(state(), State::authorized);
    server->hangs = true; // while it starts
    scheduler.advance(Seconds{10.0});
    server->observer.appeared();
    server->recover();
    EXPECT_EQ(server->shown, 1);

    add("B");
    server->hangs = true;
    scheduler.advance(Seconds{10.0});
    server->observer.vanished();
    server->recover(); // with the last that it said
    server->screen.clear();
    server->observer.appeared();
    EXPECT_EQ(server->screen.size(), 1U) << "it is not where it was shown any more";
}

} // namespace
} // namespace brevlin
