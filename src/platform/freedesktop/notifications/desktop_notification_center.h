#pragma once

#include "platform/clock.h"
#include "platform/freedesktop/notifications/notification_authorization.h"
#include "platform/freedesktop/notifications/notification_banner.h"
#include "platform/freedesktop/notifications/notification_server.h"
#include "platform/task_scheduler.h"
#include "platform/user_notification_center.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// The desktop's notification server only shows things now, so this keeps what is to come and shows it at its
/// wall-clock instant, also when the clock was set or the computer slept meanwhile. At most one notification
/// is on the screen; it stays there until the user reacts, the next one comes, or it is withdrawn, and comes
/// back when another server takes over.
class DesktopNotificationCenter final : public UserNotificationCenter
{
public:
    DesktopNotificationCenter(std::unique_ptr<NotificationServer> server, const Clock& clock,
                              TaskScheduler& scheduler);
    DesktopNotificationCenter(const DesktopNotificationCenter&) = delete;
    DesktopNotificationCenter& operator=(const DesktopNotificationCenter&) = delete;
    /// Takes what is on the screen away.
    ~DesktopNotificationCenter() override;

    void setResponseHandler(std::function<void(const NotificationResponse&)> handler) override;
    void setCategories(std::vector<NotificationCategory> categories) override;
    void add(const NotificationRequest& request, Completion completion) override;
    void removePending(const std::vector<std::string>& identifiers) override;
    void removeDelivered(const std::vector<std::string>& identifiers) override;
    void removeAllDelivered() override;
    void readSettings(std::function<void(NotificationAuthorizationSnapshot)> completion) override;
    void requestAuthorization(Completion completion) override;
    void setSettingsChangeHandler(std::function<void()> handler) override;

    /// Who says whether something else of the program's will stand where the desktop shows its banners, at
    /// the moment when an announcement is shown. One that the desktop can list without a banner then is.
    void setBannerObstacle(std::function<bool(const BannerPlace&)> obstacle);
    /// Told where the desktop shows its banners whenever that may have changed; nothing where they are in
    /// nobody's way.
    void setBannerPlaceHandler(std::function<void(const std::optional<BannerPlace>&)> handler);

    /// Who shows what is to be shown anew, by calling what it is given, at once or later, but not after the
    /// end of this object. What is outdated by then is not shown.
    void setGate(std::function<void(std::function<void()> show)> gate);
    /// Silence that the program itself keeps is no do-not-disturb of the user's.
    void setOwnSilence(bool isKept) { m_server->setOwnSilence(isKept); }

    /// What the server gave along with the reaction that is being handled, so that a window may come to the
    /// front; empty otherwise.
    const std::string& activationToken() const { return m_activationToken; }

private:
    struct Delivered
    {
        NotificationRequest request;
        bool staysAtRemoval = true; // the first one, see removeDelivered()
    };

    Instant dueOf(const NotificationRequest& request) const { return request.requestedAt + request.delay; }
    bool isDue(const NotificationRequest& request) const;
    void awaitNextDue();
    void deliverWhatIsDue();
    void deliver(NotificationRequest request);
    void showWhenLetThrough();
    void show(bool isSilent);
    ServerNotification serverForm(const NotificationRequest& request) const;
    NotificationUrgency urgencyOf(const NotificationRequest& request) const;
    std::vector<NotificationAction> actionsOf(const std::string& categoryIdentifier) const;

    void observeServer();
    void serverIsThere();
    void actionInvoked(std::uint32_t id, const std::string& action);
    void closed(std::uint32_t id, NotificationServer::CloseReason reason);
    void respond(const std::string& action, const NotificationRequest& request);

    std::unique_ptr<NotificationServer> m_server;
    const Clock& m_clock;
    TaskScheduler& m_scheduler;
    NotificationBanner m_banner;
    NotificationAuthorization m_authorization;
    std::vector<NotificationCategory> m_categories;
    std::function<void(const NotificationResponse&)> m_responseHandler;
    std::optional<BannerPlace> m_bannerPlace;
    std::function<bool(const BannerPlace&)> m_bannerObstacle;
    std::function<void(const std::optional<BannerPlace>&)> m_bannerPlaceHandler;
    std::function<void(std::function<void()>)> m_gate;
    std::uint64_t m_showing = 0; // what the gate was given last

    std::vector<NotificationRequest> m_pending;
    TaskHandle m_nextDue;
    std::optional<Delivered> m_delivered;
    std::string m_givenToken;      // with the next action
    std::string m_activationToken; // of the action that is being handled
};

} // namespace brevlin
