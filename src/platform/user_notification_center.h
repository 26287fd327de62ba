#pragma once

#include "core/expected.h"
#include "core/instant.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace brevlin {

enum class NotificationAuthorizationState { notDetermined, denied, authorized, provisional, unknown };

/// What the desktop lets the program announce.
struct NotificationAuthorizationSnapshot
{
    NotificationAuthorizationState state = NotificationAuthorizationState::unknown;
    bool alertsEnabled = false;
    bool soundsEnabled = false;
    bool timeSensitiveEnabled = false;

    bool operator==(const NotificationAuthorizationSnapshot&) const = default;
};

/// A button of a notification.
struct NotificationAction
{
    std::string identifier;
    std::string title;

    bool operator==(const NotificationAction&) const = default;
};

/// A kind of notification and the buttons that all of its kind have.
struct NotificationCategory
{
    std::string identifier;
    std::vector<NotificationAction> actions;
    std::string hiddenPreviewPlaceholder;

    bool operator==(const NotificationCategory&) const = default;
};

/// One notification to come. Texts are plain, never markup.
struct NotificationRequest
{
    std::string identifier;
    std::string title;
    std::string body;
    std::string categoryIdentifier;
    std::string threadIdentifier;
    std::map<std::string, std::string> userInfo;
    bool timeSensitive = false;
    Instant requestedAt; ///< what the delay counts from, so that no time is lost on the way here
    Seconds delay{1.0};  ///< at least 1 s

    bool operator==(const NotificationRequest&) const = default;
};

/// What the user did with a notification.
struct NotificationResponse
{
    std::string actionIdentifier; ///< a button's, or one of the two below
    std::map<std::string, std::string> userInfo;
};

inline constexpr const char* defaultNotificationActionIdentifier = "default";
inline constexpr const char* dismissNotificationActionIdentifier = "dismiss";

/// The desktop's notifications. Nothing here waits: answers arrive on the main thread, at once or later.
class UserNotificationCenter
{
public:
    using Completion = std::function<void(Expected<void, std::string>)>;

    virtual ~UserNotificationCenter() = default;

    virtual void setResponseHandler(std::function<void(const NotificationResponse&)> handler) = 0;
    /// Replaces all categories.
    virtual void setCategories(std::vector<NotificationCategory> categories) = 0;
    /// In place of a pending request of the same identifier.
    virtual void add(const NotificationRequest& request, Completion completion) = 0;
    /// A request that is due already is delivered first.
    virtual void removePending(const std::vector<std::string>& identifiers) = 0;
    /// The first removal after the delivery is that of the phase's end which the notification announces:
    /// the notification stays on the screen, and a second one takes it away.
    virtual void removeDelivered(const std::vector<std::string>& identifiers) = 0;
    /// Takes every notification off the screen; what it announced is no longer so.
    virtual void removeAllDelivered() = 0;
    virtual void readSettings(std::function<void(NotificationAuthorizationSnapshot)> completion) = 0;
    /// Asks for permission to show alerts and play sounds.
    virtual void requestAuthorization(Completion completion) = 0;
    /// Called whenever the settings may read differently than before.
    virtual void setSettingsChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
