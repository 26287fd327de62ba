#pragma once

#include "platform/freedesktop/notifications/notification_server.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace brevlin::test {

/// A notification server with a screen. It answers at once unless the test makes it hang.
class FakeNotificationServer final : public NotificationServer
{
public:
    Capabilities capabilities{"body", "body-markup", "actions", "sound"};
    bool isRunning = true;
    bool hangs = false;
    bool replaces = true; ///< false: shows a replacement beside what it was to replace, as some servers do
    std::map<std::uint32_t, ServerNotification> screen;
    bool ownSilence = false;
    int shown = 0; ///< how often it was asked to show something

    void setObserver(Observer newObserver) override { observer = std::move(newObserver); }
    void readCapabilities(std::function<void(Expected<Capabilities, std::string>)> completion) override
    {
        answer([this, completion = std::move(completion)] {
            isRunning ? completion(capabilities) : completion(Unexpected<std::string>{"no server"});
        });
    }
    void notify(const ServerNotification& notification,
                std::function<void(Expected<std::uint32_t, std::string>)> completion) override
    {
        answer([this, notification, completion = std::move(completion)] {
            if (!isRunning) {
                completion(Unexpected<std::string>{"no server"});
                return;
            }
            ++shown;
            lastId = replaces && notification.replaces != 0 && screen.contains(notification.replaces)
                         ? notification.replaces
                         : lastId + 1;
            screen[lastId] = notification;
            completion(lastId);
        });
    }
    void close(std::uint32_t id) override
    {
        if (screen.erase(id) != 0) {
            observer.closed(id, CloseReason::other);
        }
    }

    void setOwnSilence(bool isKept) override { ownSilence = isKept; }

    /// What was asked while it hung is answered now.
    void recover()
    {
        hangs = false;
        for (; !m_questions.empty(); m_questions.pop_front()) {
            m_questions.front()();
        }
    }
    void die()
    {
        isRunning = false;
        screen.clear();
        observer.vanished();
        observer.becameUnavailable();
    }
    /// Another program takes over from one that has not answered yet; recover() answers for that one.
    void isReplaced()
    {
        hangs = false;
        screen.clear();
        observer.vanished();
        observer.appeared();
    }
    void startAgain()
    {
        isRunning = true;
        lastId = 0;
        observer.appeared();
    }
    /// The user's doing, to the latest notification.
    void act(const std::string& action, const std::string& token = {})
    {
        if (!token.empty()) {
            observer.activationTokenGiven(lastId, token);
        }
        observer.actionInvoked(lastId, action);
    }
    void dismiss()
    {
        screen.erase(lastId);
        observer.closed(lastId, CloseReason::dismissed);
    }

    Observer observer;
    std::uint32_t lastId = 0;

private:
    void answer(std::function<void()> reply) { hangs ? m_questions.push_back(std::move(reply)) : reply(); }

    std::deque<std::function<void()>> m_questions;
};

} // namespace brevlin::test
