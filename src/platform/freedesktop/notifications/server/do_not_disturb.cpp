#include "platform/freedesktop/notifications/server/do_not_disturb.h"

#include <utility>

namespace brevlin {

void DoNotDisturb::follow(std::string_view serverName)
{
    const auto found = switchOfServer(serverName);
    if (m_switch && found && m_name == found->name) {
        return;
    }
    m_name = found ? found->name : std::string();
    m_switch = makeSwitch(m_name, m_bus);
    if (m_switch) {
        // What has changed is read; the signal only says when.
        QObject::connect(m_switch.get(), &DoNotDisturbSwitch::turned, m_switch.get(), [this] { read(); });
        m_switch->follow();
        read();
    }
}

void DoNotDisturb::setOwnSilence(bool isKept)
{
    if (std::exchange(m_isSilenceOurs, isKept) != isKept) {
        read();
    }
}

void DoNotDisturb::setChangeHandler(std::function<void(bool)> handler)
{
    m_changeHandler = std::move(handler);
}

void DoNotDisturb::read()
{
    if (m_switch) {
        m_switch->read([this](NotificationSilencer::State state) {
            if (m_changeHandler) {
                m_changeHandler(state == NotificationSilencer::State::silent && !m_isSilenceOurs);
            }
        });
    }
}

} // namespace brevlin
