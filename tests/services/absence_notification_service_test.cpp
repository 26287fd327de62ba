#include "services/absence_notification_service.h"
#include "support/fake_desktop.h"

#include <gtest/gtest.h>

#include <tuple>

namespace brevlin {
namespace {

const Uuid session = *Uuid::fromText("0F8FAD5B-D9CB-469F-A165-70867728950E");

TEST(AbsenceNotificationService, asks_with_three_buttons_and_tells_the_answer)
{
    test::FakeNotificationCenter center;
    AbsenceNotificationService service{center};
    using Answer = std::tuple<Uuid, std::size_t, std::optional<AbsenceDecision>>;
    std::vector<Answer> answers;
    service.setAnswerHandler([&](const Uuid& id, std::size_t index, std::optional<AbsenceDecision> decision) {
        answers.emplace_back(id, index, decision);
    });
    service.ask({session, 1, "You were away.", "Does it count?", "Keep", "Not", "End"},
                Instant{Seconds{8e8}});
    service.ask({session, 2, "You were away.", "Does it count?", "Keep", "Not", "End at 9"},
                Instant{Seconds{8e8}});
    ASSERT_EQ(center.pending.size(), 1U) << "in place of the other";
    EXPECT_EQ(center.withdrawals, 2) << "before the buttons of what is on the screen change";
    const NotificationRequest request = center.pending.front();
    EXPECT_EQ(request.title + request.body, "You were away.Does it count?");
    EXPECT_EQ(request.requestedAt, Instant{Seconds{8e8}});
    EXPECT_EQ(request.categoryIdentifier, center.categories.at(0).identifier);
    const auto& actions = center.categories[0].actions;
    ASSERT_EQ(actions.size(), 3U);
    EXPECT_EQ(actions[2].title, "End at 9");
    for (const NotificationAction& action : actions) {
        center.respond(action.identifier, request.userInfo);
    }
    center.respond(defaultNotificationActionIdentifier, request.userInfo);
    center.respond(dismissNotificationActionIdentifier, request.userInfo);
    center.respond(actions[0].identifier, {{"sessionID", session.text()}, {"absence", "2nd"}});
    EXPECT_EQ(answers, (std::vector<Answer>{{session, 2, AbsenceDecision::keep},
                                            {session, 2, AbsenceDecision::doNotCount},
                                            {session, 2, AbsenceDecision::endAtStart},
                                            {session, 2, std::nullopt}}));
    service.withdraw();
    EXPECT_TRUE(center.pending.empty());
    EXPECT_EQ(center.withdrawals, 3);
}

} // namespace
} // namespace brevlin
