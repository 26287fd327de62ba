#pragma once

#include "platform/notification_silencer.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

class MessageBus;

/// What one desktop has for do-not-disturb. No call waits but turnOffNow().
class DoNotDisturbSwitch : public QObject
{
    Q_OBJECT

public:
    using State = NotificationSilencer::State;
    using Answer = NotificationSilencer::Answer;
    using Completion = NotificationSilencer::Completion;

    /// Tells of turned() from now on. More calls change nothing.
    virtual void follow() = 0;
    virtual void read(Answer answer) = 0;
    virtual void turn(bool isOn, Completion completion) = 0;
    virtual bool turnOffNow(Seconds longest) = 0;

Q_SIGNALS:
    /// By somebody else. What was turned here comes before its completion, or not at all.
    void turned(bool isOn);

protected:
    /// For desktops that tell of a change at any time, ours too: emits what differs from what is known.
    void tell(bool isOn);
    void know(bool isOn) { m_known = isOn; }

private:
    std::optional<bool> m_known;
};

/// The switch of the notification server that calls itself so; nothing where it has none that is known here.
std::optional<NotificationSilencer::Switch> switchOfServer(std::string_view serverName);

/// By the name of the switch; nothing for a name that is not known here. The bus outlives it.
std::unique_ptr<DoNotDisturbSwitch> makeSwitch(std::string_view name, MessageBus& bus);

} // namespace brevlin
