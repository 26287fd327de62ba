#pragma once

#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>
#include <QVariantMap>

namespace brevlin {

/// An object on the session bus with one interface. Its description is what it holds callers to: a call whose
/// arguments have other types is refused before it arrives. Unlike Qt's adaptors it learns who asks for which
/// property. Nothing happens until the bus is open.
class BusObject : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /// `description` is the interface in the bus's introspection format.
    BusObject(MessageBus& bus, const QString& path, const QString& interface, const QString& description);
    ~BusObject() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

protected:
    virtual QVariantMap properties() const { return {}; }
    /// One property was asked for by its name.
    virtual void propertyAsked(const QString& /*name*/) {}
    /// The values that answer a call of a method of the description, which has the types that stand there.
    virtual QVariantList answer(const QString& method, const QVariantList& arguments) = 0;
    void emitSignal(const char* name, const QVariantList& arguments = {}) const;

private:
    QDBusMessage reply(const QDBusMessage& message);
    QDBusMessage propertyReply(const QDBusMessage& message);

    MessageBus& m_bus;
    QString m_path;
    QString m_interface;
    QString m_description;
    QHash<QString, QString> m_signatures; // of the methods' arguments; read with the first call
};

} // namespace brevlin
