#pragma once

#include "platform/user_notification_center.h"

namespace brevlin {

/// Stands where the program has no way to the desktop's notifications: nothing can be announced, and it says
/// so.
class AbsentNotificationCenter final : public UserNotificationCenter
{
public:
    void setResponseHandler(std::function<void(const NotificationResponse&)> handler) override;
    void setCategories(std::vector<NotificationCategory> categories) override;
    void add(const NotificationRequest& request, Completion completion) override;
    void removePending(const std::vector<std::string>& identifiers) override;
    void removeDelivered(const std::vector<std::string>& identifiers) override;
    void readSettings(std::function<void(NotificationAuthorizationSnapshot)> completion) override;
    void requestAuthorization(Completion completion) override;
};

} // namespace brevlin
