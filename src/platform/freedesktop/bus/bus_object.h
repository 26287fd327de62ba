#pragma once

#include "platform/freedesktop/bus/bus_interface.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <vector>

namespace brevlin {

/// An object on the session bus with the interfaces that are added to it. Nothing happens until the bus is
/// open; calls arrive with the event loop, so that whoever adds an interface before it misses none.
class BusObject final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    static const QString propertiesInterface;

    BusObject(MessageBus& bus, QString path, QObject* parent = nullptr);
    ~BusObject() override;

    /// The interface leaves by itself when it ends.
    void add(BusInterface& interface);
    void remove(const BusInterface& interface);

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    void emitSignal(const QString& interface, const QString& name, const QVariantList& arguments) const;

private:
    /// Of the interface, or of the first that has the method or the property where the caller names none, as
    /// https://dbus.freedesktop.org/doc/dbus-specification.html allows; nothing for an interface not here.
    QDBusMessage answered(const QDBusMessage& message) const;

    MessageBus& m_bus;
    QString m_path;
    std::vector<BusInterface*> m_interfaces;
};

} // namespace brevlin
