#include "platform/freedesktop/notifications/switches/desktop_notification_silencer.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>

#include <limits>
#include <utility>

namespace brevlin {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

// Qt's sign of a call without a time limit.
constexpr int forEver = std::numeric_limits<int>::max();

} // namespace

void DesktopNotificationSilencer::setObserver(Observer observer)
{
    m_observer = std::move(observer);
}

void DesktopNotificationSilencer::look()
{
    if (std::exchange(m_looks, true)) {
        if (m_support == Support::unknown && !m_isAsking) {
            askServer();
        }
        return;
    }
    if (!m_bus.isOpen()) {
        m_support = Support::none; // until the bus answers, which it may never do
    }
    m_bus.whenOpen(this, [this] {
        watchServer();
        askServer();
    });
}

void DesktopNotificationSilencer::watchServer()
{
    auto* watcher =
        new QDBusServiceWatcher(service, m_bus.connection(), QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
                ++m_question; // which was for the other one
                m_isAsking = false;
                // Some servers end while they have nothing to do, and the bus starts them for the next
                // notification: a switch that outlives them is theirs all the while.
                const bool isKept = newOwner.isEmpty() && m_current && m_current->lasts == Lasts::always;
                if (!isKept) {
                    settle(Support::unknown, std::nullopt);
                }
                if (!newOwner.isEmpty()) {
                    askServer();
                }
            });
}

void DesktopNotificationSilencer::askServer()
{
    const QDBusMessage message =
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("GetServerInformation"));
    m_isAsking = true;
    m_bus.call(
        message, this,
        [this, question = ++m_question](const QDBusMessage& answer) {
            if (question == m_question) {
                // Name, vendor, version and the version of the protocol.
                const auto server = busArguments<QString, QString, QString, QString>(answer);
                serverIs(server ? std::get<0>(*server) : QString());
            }
        },
        forEver);
}

void DesktopNotificationSilencer::serverIs(const QString& name)
{
    const auto found = switchOfServer(name.toStdString());
    if (!found) {
        m_isAsking = false;
        settle(Support::none, std::nullopt);
        return;
    }
    DoNotDisturbSwitch* chosen = switchOf(found->name);
    chosen->follow();
    // An older desktop may lack it.
    chosen->read([this, found, question = m_question](State state) {
        if (question != m_question) {
            return;
        }
        m_isAsking = false;
        if (state != State::unknown) {
            state == State::absent ? settle(Support::none, std::nullopt) : settle(Support::full, found);
        }
    });
}

void DesktopNotificationSilencer::settle(Support support, const std::optional<Switch>& current)
{
    m_support = support;
    m_current = current;
    if (m_observer.switchChanged) {
        m_observer.switchChanged();
    }
}

DoNotDisturbSwitch* DesktopNotificationSilencer::switchOf(const std::string& name)
{
    auto& known = m_switches[name];
    if (!known) {
        known = makeSwitch(name, m_bus);
        if (known) {
            connect(known.get(), &DoNotDisturbSwitch::turned, this, [this, name] {
                if (m_current && m_current->name == name && m_observer.wasTurned) {
                    m_observer.wasTurned();
                }
            });
        }
    }
    return known.get();
}

void DesktopNotificationSilencer::readState(const std::string& name, Answer answer)
{
    if (DoNotDisturbSwitch* chosen = switchOf(name)) {
        chosen->read(std::move(answer));
    } else {
        QMetaObject::invokeMethod(
            this, [answer = std::move(answer)] { answer(State::absent); }, Qt::QueuedConnection);
    }
}

void DesktopNotificationSilencer::silence(const std::string& name, Completion completion)
{
    turn(name, true, std::move(completion));
}

void DesktopNotificationSilencer::giveBack(const std::string& name, Completion completion)
{
    turn(name, false, std::move(completion));
}

void DesktopNotificationSilencer::turn(const std::string& name, bool isOn, Completion completion)
{
    if (DoNotDisturbSwitch* chosen = switchOf(name)) {
        chosen->turn(isOn, std::move(completion));
    } else {
        QMetaObject::invokeMethod(
            this, [completion = std::move(completion)] { completion(false); }, Qt::QueuedConnection);
    }
}

bool DesktopNotificationSilencer::giveBackNow(const std::string& name, Seconds longest)
{
    DoNotDisturbSwitch* chosen = switchOf(name);
    return chosen != nullptr && chosen->turnOffNow(longest);
}

} // namespace brevlin
