#pragma once

#include "platform/freedesktop/notifications/switches/do_not_disturb_switch.h"
#include "platform/notification_silencer.h"

#include <QObject>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace brevlin {

class MessageBus;

/// The switch of whichever program owns org.freedesktop.Notifications now.
class DesktopNotificationSilencer final : public QObject, public NotificationSilencer
{
    Q_OBJECT

public:
    explicit DesktopNotificationSilencer(MessageBus& bus) : m_bus(bus) {}

    void setObserver(Observer observer) override;
    void look() override;
    Support support() const override { return m_support; }
    const std::optional<Switch>& current() const override { return m_current; }
    void readState(const std::string& name, Answer answer) override;
    void silence(const std::string& name, Completion completion) override;
    void giveBack(const std::string& name, Completion completion) override;
    bool giveBackNow(const std::string& name, Seconds longest) override;

private:
    void watchServer();
    void askServer();
    void serverIs(const QString& name);
    void settle(Support support, const std::optional<Switch>& current);
    void turn(const std::string& name, bool isOn, Completion completion);
    /// None for a name that is not known.
    DoNotDisturbSwitch* switchOf(const std::string& name);

    MessageBus& m_bus;
    Observer m_observer;
    bool m_looks = false;
    bool m_isAsking = false;
    Support m_support = Support::unknown;
    std::optional<Switch> m_current;
    std::uint64_t m_question = 0; // about the server that runs now
    std::map<std::string, std::unique_ptr<DoNotDisturbSwitch>> m_switches;
};

} // namespace brevlin
