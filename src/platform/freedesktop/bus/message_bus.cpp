#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace brevlin {

MessageBus::MessageBus(BusInquiry& inquiry, std::function<QDBusConnection()> connect, QObject* parent)
    : QObject(parent), m_inquiry(inquiry), m_connect(std::move(connect)), m_connection(QString())
{
    // Before the first look, so that no answer falls between them.
    m_inquiry.setHandler(
        [this] { QMetaObject::invokeMethod(this, &MessageBus::look, Qt::QueuedConnection); });
    look();
}

MessageBus::~MessageBus()
{
    m_inquiry.setHandler({});
}

void MessageBus::look()
{
    if (m_inquiry.answer() != BusInquiry::Answer::yes || isOpen()) {
        return;
    }
    m_connection = m_connect();
    if (isOpen() && !m_isHeldBack) {
        Q_EMIT opened();
    }
}

void MessageBus::release()
{
    if (std::exchange(m_isHeldBack, false) && isOpen()) {
        Q_EMIT opened();
    }
}

void MessageBus::whenOpen(const QObject* context, const std::function<void()>& callback)
{
    if (isOpen() && !m_isHeldBack) {
        callback();
    } else {
        connect(this, &MessageBus::opened, context, callback);
    }
}

// Qt never says how a call ended that was made over no connection.
void MessageBus::call(const QDBusMessage& question, QObject* context,
                      std::function<void(const QDBusMessage&)> answered, int timeout) const
{
    if (!isOpen()) {
        QMetaObject::invokeMethod(
            context,
            [answered = std::move(answered), question] {
                answered(question.createErrorReply(QDBusError::Disconnected,
                                                   QStringLiteral("The message bus does not answer.")));
            },
            Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(question, timeout), context);
    connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, answered = std::move(answered)] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

} // namespace brevlin
