#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QDBusMessage;

namespace brevlin {

class MessageBus;

/// Whether the user has silenced the desktop's notifications. Every server keeps that elsewhere; it is off
/// for one that is not known here.
class DoNotDisturb final : public QObject
{
    Q_OBJECT

public:
    explicit DoNotDisturb(MessageBus& bus, QObject* parent = nullptr);

    /// Reads what this server keeps and follows its changes. The name is what the server calls itself.
    void follow(const QString& serverName);
    void forgetServer();
    /// Called with each reading.
    void setChangeHandler(std::function<void(bool)> handler);

private Q_SLOTS:
    void read();

private:
    void ask(const QDBusMessage& message);
    void askGnome();
    void tell(bool isOn);

    MessageBus& m_bus;
    QString m_serverName;
    std::function<void(bool)> m_changeHandler;
};

} // namespace brevlin
