#pragma once

#include "platform/hook_programs.h"
#include "platform/login_item.h"
#include "platform/sound_player.h"
#include "platform/system_events.h"
#include "platform/user_notification_center.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace brevlin::test {

/// A notification centre that remembers what it was asked and answers as the test wants.
class FakeNotificationCenter final : public UserNotificationCenter
{
public:
    NotificationAuthorizationSnapshot settings;
    std::string failure; ///< of adding and asking; none when empty
    bool answers = true; ///< false: readSettings is answered by answerNow()
    std::vector<NotificationCategory> categories;
    std::vector<NotificationRequest> pending;
    std::vector<std::string> removedDelivered;
    int permissionRequests = 0;
    int withdrawals = 0; ///< of everything on the screen
    std::function<void()> settingsChanged;

    void setResponseHandler(std::function<void(const NotificationResponse&)> handler) override
    {
        m_responseHandler = std::move(handler);
    }
    void setCategories(std::vector<NotificationCategory> all) override { categories = std::move(all); }
    void add(const NotificationRequest& request, Completion completion) override
    {
        if (failure.empty()) {
            pending.push_back(request);
        }
        complete(completion);
    }
    void removePending(const std::vector<std::string>& identifiers) override
    {
        std::erase_if(pending, [&](const NotificationRequest& request) {
            return std::find(identifiers.begin(), identifiers.end(), request.identifier) != identifiers.end();
        });
    }
    void removeDelivered(const std::vector<std::string>& identifiers) override
    {
        removedDelivered = identifiers;
    }
    void removeAllDelivered() override { ++withdrawals; }
    void setSettingsChangeHandler(std::function<void()> handler) override
    {
        settingsChanged = std::move(handler);
    }
    void readSettings(std::function<void(NotificationAuthorizationSnapshot)> completion) override
    {
        m_waiting.push_back(std::move(completion));
        if (answers) {
            answerNow();
        }
    }
    void requestAuthorization(Completion completion) override
    {
        ++permissionRequests;
        if (failure.empty()) {
            settings.state = NotificationAuthorizationState::authorized;
        }
        complete(completion);
    }

    void answerNow()
    {
        for (auto& completion : std::exchange(m_waiting, {})) {
            completion(settings);
        }
    }
    void respond(const std::string& action, const std::map<std::string, std::string>& userInfo)
    {
        m_responseHandler({action, userInfo});
    }

private:
    void complete(const Completion& completion) const
    {
        failure.empty() ? completion({}) : completion(Unexpected{failure});
    }

    std::function<void(const NotificationResponse&)> m_responseHandler;
    std::vector<std::function<void(NotificationAuthorizationSnapshot)>> m_waiting;
};

/// A sound player that plays in silence and tells what it does.
class FakeSoundPlayer final : public SoundPlayer
{
public:
    std::set<std::string> names{"Glass", "Ping"};
    bool hasHungServer = false;
    std::vector<std::string> log; ///< "play Glass", "loop Glass", "stop Glass", "beep"
    std::function<void()> finish; ///< of the latest sound

    std::unique_ptr<Sound> sound(const std::string& name) override
    {
        return names.contains(name) ? std::make_unique<FakeSound>(*this, name) : nullptr;
    }
    void beep() override { log.emplace_back("beep"); }

private:
    class FakeSound final : public Sound
    {
    public:
        FakeSound(FakeSoundPlayer& player, std::string name) : m_player(player), m_name(std::move(name)) {}
        void setLoops(bool loops) override { m_loops = loops; }
        void play() override
        {
            if (!m_player.hasHungServer) {
                m_player.log.push_back((m_loops ? "loop " : "play ") + m_name);
                m_started();
            }
        }
        void stop() override { m_player.log.push_back("stop " + m_name); }
        void setStartedHandler(std::function<void()> handler) override { m_started = std::move(handler); }
        void setFinishedHandler(std::function<void()> handler) override
        {
            m_player.finish = std::move(handler);
        }

    private:
        FakeSoundPlayer& m_player;
        std::string m_name;
        bool m_loops = false;
        std::function<void()> m_started;
    };
};

/// A login item in a state that the test chooses.
class FakeLoginItem final : public LoginItem
{
public:
    Status current = Status::notRegistered;
    Status afterRegistering = Status::enabled;
    std::string failure;
    int changes = 0;

    Status status() const override { return current; }
    void registerItem(Completion completion) override { completion(change(afterRegistering)); }
    void unregisterItem(Completion completion) override { completion(change(Status::notRegistered)); }
    void openSettings() override { ++openedSettings; }
    void setChangeHandler(std::function<void()> handler) override { changed = std::move(handler); }

    std::function<void()> changed;
    int openedSettings = 0;

private:
    Expected<void, std::string> change(Status next)
    {
        ++changes;
        if (!failure.empty()) {
            return Unexpected{failure};
        }
        current = next;
        return {};
    }
};

class FakeHookPrograms final : public HookPrograms
{
public:
    std::vector<HookCall> calls;
    std::vector<HookResult> results; ///< of each call

    const std::string& folder() const override { return m_folder; }
    std::vector<HookResult> run(const HookCall& call) override
    {
        calls.push_back(call);
        return results;
    }
    void hurry() override {}

private:
    std::string m_folder = "/hooks";
};

class FakeSystemEvents final : public SystemEvents
{
public:
    void setObserver(Observer newObserver) override { observer = std::move(newObserver); }

    Observer observer;
};

} // namespace brevlin::test
