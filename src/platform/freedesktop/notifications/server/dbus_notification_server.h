#pragma once

#include "platform/freedesktop/notifications/notification_server.h"
#include "platform/freedesktop/notifications/server/do_not_disturb.h"

#include <QObject>

class QDBusError;
class QDBusMessage;

namespace brevlin {

class MessageBus;

/// The owner of org.freedesktop.Notifications on the session bus. No call waits for it.
class DBusNotificationServer final : public QObject, public NotificationServer
{
    Q_OBJECT

public:
    explicit DBusNotificationServer(MessageBus& bus, QObject* parent = nullptr);
    /// Makes sure that what was asked last has left the program.
    ~DBusNotificationServer() override;

    void setObserver(Observer observer) override;
    void readCapabilities(std::function<void(Expected<Capabilities, std::string>)> completion) override;
    void notify(const ServerNotification& notification,
                std::function<void(Expected<std::uint32_t, std::string>)> completion) override;
    void close(std::uint32_t id) override;
    void setOwnSilence(bool isKept) override;

private Q_SLOTS:
    void actionInvoked(const QDBusMessage& message);
    void activationTokenGiven(const QDBusMessage& message);
    void notificationClosed(const QDBusMessage& message);

private:
    void watchServer();
    void ownerChanged(const QString& oldOwner, const QString& newOwner);
    void tellWhenUnavailable();
    void readServerName();
    void tellBannerPlace(const std::optional<BannerPlace>& place);
    /// Hands the answer or the error over; the answer may take for ever.
    void call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> answered);

    MessageBus& m_bus;
    Observer m_observer;
    DoNotDisturb m_doNotDisturb;
    bool m_hasOwner = false; // as far as its changes have told
};

} // namespace brevlin
