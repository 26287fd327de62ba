#pragma once

#include "platform/freedesktop/notifications/notification_server.h"
#include "platform/task_scheduler.h"
#include "platform/user_notification_center.h"

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace brevlin {

/// Whether there is a notification server and what it can do. Unknown until one has answered or there turned
/// out to be none; nobody waits longer than a moment for a server that does not answer.
class NotificationAuthorization final
{
public:
    using Completion = UserNotificationCenter::Completion;
    using Reader = std::function<void(NotificationAuthorizationSnapshot)>;

    NotificationAuthorization(NotificationServer& server, TaskScheduler& scheduler)
        : m_server(server), m_scheduler(scheduler)
    {}

    NotificationAuthorizationSnapshot snapshot() const;
    /// Of the server that answered last.
    const NotificationServer::Capabilities& capabilities() const { return m_capabilities; }

    /// Asks the server anew; the answer to an earlier question counts no more.
    void ask();
    /// Gives the snapshot at once where it is known.
    void read(Reader reader);
    /// Succeeds once the server has shown that it is there; a late answer is a failure.
    void confirm(Completion completion);
    void serverBecameUnavailable();
    void setDoNotDisturb(bool isOn);

    /// Called when the snapshot has changed.
    void setChangeHandler(std::function<void()> handler);
    /// Called whenever a server has told its capabilities.
    void setServerHandler(std::function<void()> handler);

private:
    struct Confirmation
    {
        Completion completion;
        TaskHandle patience;
    };

    void answered(const Expected<NotificationServer::Capabilities, std::string>& answer);
    void answerConfirmations(const Expected<void, std::string>& result);
    void answerReaders();
    void publish();

    NotificationServer& m_server;
    TaskScheduler& m_scheduler;
    std::function<void()> m_changeHandler;
    std::function<void()> m_serverHandler;
    NotificationAuthorizationState m_state = NotificationAuthorizationState::unknown;
    NotificationServer::Capabilities m_capabilities;
    bool m_isDoNotDisturbOn = false;
    NotificationAuthorizationSnapshot m_published;
    bool m_isAsking = false;
    std::uint64_t m_question = 0;
    std::vector<Reader> m_readers;
    TaskHandle m_readersPatience;
    std::map<std::uint64_t, Confirmation> m_confirmations; // by number, in the order of asking
    std::uint64_t m_lastConfirmation = 0;
};

} // namespace brevlin
