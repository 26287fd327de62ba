#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <optional>

namespace brevlin {

/// An object on the session bus with one interface. Unlike Qt's adaptors it learns who asks for which
/// property. Nothing happens without a session bus.
class StatusBusObject : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /// `description` is the interface in the bus's introspection format.
    StatusBusObject(const QString& path, const QString& interface, const QString& description);
    ~StatusBusObject() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

protected:
    virtual QVariantMap properties() const = 0;
    /// One property was asked for by its name.
    virtual void propertyAsked(const QString& /*name*/) {}
    /// The values that answer the call; nothing for a method that the interface lacks.
    virtual std::optional<QVariantList> answer(const QString& method, const QVariantList& arguments) = 0;
    void emitSignal(const char* name, const QVariantList& arguments = {}) const;

private:
    QDBusMessage reply(const QDBusMessage& message);
    QDBusMessage propertyReply(const QDBusMessage& message);

    QString m_path;
    QString m_interface;
    QString m_description;
    QDBusConnection m_bus;
};

} // namespace brevlin
