#pragma once

#include "platform/freedesktop/bus/bus_inquiry.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace brevlin {

/// The session's or the system's bus for a program that must not wait for it: closed until it has answered,
/// which may be at once or never.
class MessageBus final : public QObject
{
    Q_OBJECT

public:
    /// `connect` is called once the bus is known to answer. The inquiry must outlive this object.
    MessageBus(BusInquiry& inquiry, std::function<QDBusConnection()> connect, QObject* parent = nullptr);
    ~MessageBus() override;

    bool isOpen() const { return m_connection.isConnected(); }
    QDBusConnection connection() const { return m_connection; }
    /// Calls back at once where the bus is open, else when it opens, unless the context is gone by then.
    /// Between holdBack() and release() nobody is called.
    void whenOpen(const QObject* context, const std::function<void()>& callback);
    void holdBack() { m_isHeldBack = true; }
    void release();
    /// Asks without waiting and hands the answer or the error over, unless the context is gone by then. The
    /// timeout is in milliseconds; -1 is Qt's own.
    void call(const QDBusMessage& question, QObject* context,
              std::function<void(const QDBusMessage&)> answered, int timeout = -1) const;

Q_SIGNALS:
    void opened();

private:
    void look();

    BusInquiry& m_inquiry;
    std::function<QDBusConnection()> m_connect;
    QDBusConnection m_connection;
    bool m_isHeldBack = false;
};

} // namespace brevlin
