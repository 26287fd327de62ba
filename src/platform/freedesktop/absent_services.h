#pragma once

#include "platform/login_item.h"
#include "platform/sound_player.h"
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

/// Stands where the program cannot be started at login.
class AbsentLoginItem final : public LoginItem
{
public:
    Status status() const override { return Status::notFound; }
    Expected<void, std::string> registerItem() override;
    Expected<void, std::string> unregisterItem() override;
    void openSettings() override {}
};

/// Has no sounds of its own and rings the desktop's bell.
class BellSoundPlayer final : public SoundPlayer
{
public:
    std::unique_ptr<Sound> sound(const std::string& name) override;
    void beep() override;
};

} // namespace brevlin
