#pragma once

#include "platform/freedesktop/notifications/notification_server.h"

#include <cstdint>
#include <optional>

namespace brevlin {

/// The one notification of ours that may be on the screen. It waits for the server's answer before it asks
/// for anything else, so that a slow server never shows two, nor one that was taken back meanwhile.
class NotificationBanner final
{
public:
    explicit NotificationBanner(NotificationServer& server) : m_server(server) {}

    /// Whether it is on the screen or on its way there.
    bool isShown() const { return m_wanted && (m_id != 0 || m_isAwaitingAnswer); }
    /// Whether it is on the screen under this identifier.
    bool isShownAs(std::uint32_t id) const { return m_wanted && m_id != 0 && m_id == id; }

    /// Shows this in place of what it shows now.
    void show(ServerNotification notification);
    void close();
    /// It is not on the screen any more.
    void wasClosed();
    /// The server that showed it, or was asked to, is gone.
    void lostServer();

private:
    void update();
    void answered(const Expected<std::uint32_t, std::string>& answer);

    NotificationServer& m_server;
    std::optional<ServerNotification> m_wanted;
    std::uint32_t m_id = 0;          // on the screen; 0 for none
    std::uint64_t m_question = 0;    // the latest; answers to earlier ones are void
    bool m_isAwaitingAnswer = false; // to notify()
    bool m_isOutdated = false;       // what is wanted has changed since that was asked
};

} // namespace brevlin
