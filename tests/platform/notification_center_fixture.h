#pragma once

#include "platform/fake_notification_server.h"
#include "platform/freedesktop/notifications/desktop_notification_center.h"
#include "support/fake_task_scheduler.h"

#include <gtest/gtest.h>

#include <memory>

namespace brevlin {

using State = NotificationAuthorizationState;

class NotificationCenterTest : public ::testing::Test
{
protected:
    NotificationCenterTest() { makeCenter(); }

    void makeCenter(bool hangs = false, bool isRunning = true)
    {
        center.reset();
        auto made = std::make_unique<test::FakeNotificationServer>();
        server = made.get();
        server->hangs = hangs;
        server->isRunning = isRunning;
        center = std::make_unique<DesktopNotificationCenter>(std::move(made), clock, scheduler);
        center->setResponseHandler([this](const NotificationResponse& response) {
            responses.push_back(response.actionIdentifier + " of " + response.userInfo.at("sessionID") +
                                center->activationToken());
        });
        center->setCategories({{"ended", {{"next", "Next"}, {"stop", "Stop"}}, {}}});
    }

    NotificationRequest request(const std::string& run, Seconds delay = Seconds{10.0})
    {
        NotificationRequest result;
        result.identifier = run;
        result.title = "Focus complete";
        result.body = "“<b>&\"” is complete.";
        result.categoryIdentifier = "ended";
        result.userInfo = {{"sessionID", run}};
        result.requestedAt = clock.now();
        result.delay = delay;
        return result;
    }
    void add(const std::string& run, Seconds delay = Seconds{10.0})
    {
        center->add(request(run, delay), [this](const Expected<void, std::string>& added) {
            confirmations.push_back(added ? "added" : added.error());
        });
    }
    /// As the model does with every end of a phase.
    void withdraw(const std::string& run)
    {
        center->removePending({run, "legacy." + run});
        center->removeDelivered({run, "legacy." + run});
    }
    void announce(const std::string& run)
    {
        add(run);
        scheduler.advance(Seconds{10.0});
        withdraw(run);
        ASSERT_EQ(server->screen.size(), 1U);
    }
    /// How often something was shown, once so much time has passed.
    int shownAfter(double seconds)
    {
        scheduler.advance(Seconds{seconds});
        return server->shown;
    }
    const ServerNotification& banner() { return server->screen.begin()->second; }
    NotificationAuthorizationSnapshot settings()
    {
        NotificationAuthorizationSnapshot read;
        center->readSettings([&](const auto& answer) { read = answer; });
        return read;
    }
    State state() { return settings().state; }

    test::FakeClock clock;
    test::FakeTaskScheduler scheduler{clock};
    test::FakeNotificationServer* server = nullptr; // the centre's
    std::unique_ptr<DesktopNotificationCenter> center;
    std::vector<std::string> responses;
    std::vector<std::string> confirmations;
};

} // namespace brevlin
