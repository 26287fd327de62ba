#include "platform/freedesktop/notifications/notification_banner.h"

#include <utility>

namespace brevlin {

void NotificationBanner::show(ServerNotification notification)
{
    m_wanted = std::move(notification);
    update();
}

void NotificationBanner::close()
{
    m_wanted.reset();
    update();
}

void NotificationBanner::wasClosed()
{
    m_wanted.reset();
    m_id = 0;
}

void NotificationBanner::lostServer()
{
    m_id = 0;
    m_isAwaitingAnswer = false;
    ++m_question;
}

void NotificationBanner::update()
{
    m_isOutdated = m_isAwaitingAnswer;
    if (m_isAwaitingAnswer) {
        return;
    }
    if (m_wanted) {
        m_isAwaitingAnswer = true;
        m_wanted->replaces = m_id;
        m_server.notify(*m_wanted, [this, question = ++m_question](const auto& answer) {
            if (question == m_question) {
                answered(answer);
            }
        });
    } else if (const std::uint32_t id = std::exchange(m_id, 0); id != 0) {
        m_server.close(id);
    }
}

void NotificationBanner::answered(const Expected<std::uint32_t, std::string>& answer)
{
    m_isAwaitingAnswer = false;
    if (answer) {
        // Some servers show a replacement beside what it was to replace.
        const std::uint32_t previous = std::exchange(m_id, *answer);
        if (previous != 0 && previous != m_id) {
            m_server.close(previous);
        }
    }
    if (m_isOutdated) {
        update();
    }
}

} // namespace brevlin
