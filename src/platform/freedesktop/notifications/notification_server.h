#pragma once

#include "core/expected.h"
#include "platform/banner_place.h"
#include "platform/user_notification_center.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brevlin {

/// As servers count it: https://specifications.freedesktop.org/notification-spec/latest/urgency-levels.html
enum class NotificationUrgency : std::uint8_t {
    low = 0,
    normal = 1,
    critical = 2, ///< passes do-not-disturb
};

/// What a notification server is asked to show, in the form in which it takes it.
struct ServerNotification
{
    std::uint32_t replaces = 0; ///< the one that this one takes the place of; 0 for none
    std::string title;          ///< never markup
    std::string body;           ///< markup where the server says "body-markup"
    std::vector<NotificationAction> actions;
    NotificationUrgency urgency = NotificationUrgency::normal;
    bool isSilent = false;

    bool operator==(const ServerNotification&) const = default;
};

/// The notification server of the session, whichever program that is now
/// (https://specifications.freedesktop.org/notification-spec/latest/protocol.html). Every answer comes later,
/// on the main thread, and one that a server never gives never comes; nothing comes after the destruction.
class NotificationServer
{
public:
    using Capabilities = std::set<std::string>;

    enum class CloseReason { expired, dismissed, other };

    struct Observer
    {
        /// A program serves from now on. What was asked while there was none may have started it.
        std::function<void()> appeared;
        /// It serves no more: what it showed is gone, and what it was asked may never be answered.
        std::function<void()> vanished;
        /// There is none, nor one that the bus could start.
        std::function<void()> becameUnavailable;
        std::function<void(std::uint32_t id, const std::string& action)> actionInvoked;
        /// What lets a window come to the front; comes right before the action that it belongs to.
        std::function<void(std::uint32_t id, const std::string& token)> activationTokenGiven;
        std::function<void(std::uint32_t id, CloseReason reason)> closed;
        std::function<void(bool isOn)> doNotDisturbChanged; ///< also when first read; off until then
        /// Also when first known; nothing until then.
        std::function<void(const std::optional<BannerPlace>& place)> bannerPlaceChanged;
    };

    virtual ~NotificationServer() = default;

    virtual void setObserver(Observer observer) = 0;
    /// Starts a server where none runs and the bus can start one. Fails when there is none to be had.
    virtual void readCapabilities(std::function<void(Expected<Capabilities, std::string>)> completion) = 0;
    /// Gives the identifier of what is shown, which is greater than 0.
    virtual void notify(const ServerNotification& notification,
                        std::function<void(Expected<std::uint32_t, std::string>)> completion) = 0;
    virtual void close(std::uint32_t id) = 0;
    /// Silence that the program itself keeps is no do-not-disturb of the user's.
    virtual void setOwnSilence(bool isKept) = 0;
};

} // namespace brevlin
