#include "notification_centers.h"

#include "platform/freedesktop/notifications/server/dbus_notification_server.h"

#include <utility>

namespace brevlin {

std::unique_ptr<DesktopNotificationCenter> NotificationCenters::makeCenter() const
{
    auto center = std::make_unique<DesktopNotificationCenter>(std::make_unique<DBusNotificationServer>(m_bus),
                                                              m_clock, m_scheduler);
    center->setGate(m_gate);
    return center;
}

UserNotificationCenter& NotificationCenters::absences()
{
    if (!m_absences) {
        m_absences = makeCenter();
    }
    return *m_absences;
}

void NotificationCenters::tell(const std::string& title, const std::string& text,
                               std::function<void(const std::string& token)> chosen)
{
    if (!m_messages) {
        m_messages = makeCenter();
    }
    m_messages->setResponseHandler([this, chosen = std::move(chosen)](const NotificationResponse& response) {
        if (response.actionIdentifier == defaultNotificationActionIdentifier) {
            chosen(m_messages->activationToken());
        }
    });
    NotificationRequest request;
    request.identifier = "brevlin.message";
    request.title = title;
    request.body = text;
    request.requestedAt = m_clock.now();
    m_messages->add(request, [](const Expected<void, std::string>& /*shown*/) {});
}

void NotificationCenters::takeToldAway()
{
    if (m_messages) {
        m_messages->removeAllDelivered();
    }
}

std::string NotificationCenters::activationToken() const
{
    const std::string& token = m_timer->activationToken();
    return token.empty() && m_absences ? m_absences->activationToken() : token;
}

void NotificationCenters::setGate(std::function<void(std::function<void()> show)> gate)
{
    m_gate = std::move(gate);
    for (const auto* center : {&m_timer, &m_absences, &m_messages}) {
        if (*center) {
            (*center)->setGate(m_gate);
        }
    }
}

} // namespace brevlin
