#pragma once

#include "platform/freedesktop/notifications/switches/do_not_disturb_switch.h"

#include <QtGlobal>

#include <functional>
#include <optional>

class QDBusMessage;
class QVariant;

namespace brevlin {

/// dunst's property "paused". dunst tells of it also where it stays what it was, always before it answers.
class DunstSwitch final : public DoNotDisturbSwitch
{
    Q_OBJECT

public:
    explicit DunstSwitch(MessageBus& bus) : m_bus(bus) {}

    void follow() override;
    void read(Answer answer) override;
    void turn(bool isOn, Completion completion) override;
    bool turnOffNow(Seconds longest) override;

private Q_SLOTS:
    void propertiesChanged(const QDBusMessage& message);

private:
    static QDBusMessage setting(bool isOn);

    MessageBus& m_bus;
    bool m_follows = false;
};

/// Plasma's Inhibit, which ends with the program's connection to the bus. Beside others' inhibitions and the
/// user's own choice, so that giving back leaves those alone.
class PlasmaInhibition final : public DoNotDisturbSwitch
{
    Q_OBJECT

public:
    explicit PlasmaInhibition(MessageBus& bus) : m_bus(bus) {}

    void follow() override;
    /// Also on for what others inhibit.
    void read(Answer answer) override;
    void turn(bool isOn, Completion completion) override;
    bool turnOffNow(Seconds longest) override;

private Q_SLOTS:
    void propertiesChanged(const QDBusMessage& message);

private:
    MessageBus& m_bus;
    std::optional<uint> m_cookie; // of ours, while it stands
    bool m_follows = false;
};

/// A property of Xfce's notification daemon in xfconf, whose own daemon the bus starts when it is needed.
class XfceSwitch final : public DoNotDisturbSwitch
{
    Q_OBJECT

public:
    explicit XfceSwitch(MessageBus& bus) : m_bus(bus) {}

    void follow() override;
    void read(Answer answer) override;
    void turn(bool isOn, Completion completion) override;
    bool turnOffNow(Seconds longest) override;

private Q_SLOTS:
    void propertyChanged(const QDBusMessage& message);

private:
    static QDBusMessage setting(bool isOn);

    MessageBus& m_bus;
    bool m_follows = false;
};

} // namespace brevlin
