#pragma once

#include "platform/freedesktop/notifications/switches/do_not_disturb_switch.h"

#include <functional>
#include <memory>
#include <string_view>

namespace brevlin {

class MessageBus;

/// Whether the user has silenced the desktop's notifications; off for a server whose switch is not known
/// here.
class DoNotDisturb final
{
public:
    explicit DoNotDisturb(MessageBus& bus) : m_bus(bus) {}

    /// Reads the switch of this server and follows its changes. The name is what the server calls itself.
    void follow(std::string_view serverName);
    void forgetServer() { m_switch.reset(); }
    /// While the program itself keeps the silence, the user does not.
    void setOwnSilence(bool isKept);
    /// Called with each reading.
    void setChangeHandler(std::function<void(bool)> handler);

private:
    void read();

    MessageBus& m_bus;
    std::string m_name; // of the switch
    std::unique_ptr<DoNotDisturbSwitch> m_switch;
    bool m_isSilenceOurs = false;
    std::function<void(bool)> m_changeHandler;
};

} // namespace brevlin
