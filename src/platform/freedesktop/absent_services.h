#pragma once

#include "platform/login_item.h"
#include "platform/sound_player.h"

namespace brevlin {

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
