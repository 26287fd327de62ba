#pragma once

#include "platform/floating_window_system.h"
#include "platform/freedesktop/event_loop/local_stream.h"

#include <QByteArray>
#include <QObject>

#include <cstdint>
#include <memory>
#include <vector>

namespace brevlin {

/// What sway's bars keep free of windows. sway tells it to nobody but those who ask on its own socket, by
/// i3's protocol (https://i3wm.org/docs/ipc.html): an output less its workspace. Elsewhere nothing is
/// reserved.
class SwayWorkArea final : public QObject
{
    Q_OBJECT

public:
    explicit SwayWorkArea(QObject* parent = nullptr);

    const std::vector<FloatingWindowSystem::ReservedArea>& reservedAreas() const { return m_reserved; }
    /// Asks again: a bar that comes or goes is no event there. The answer comes later.
    void ask();

Q_SIGNALS:
    void changed();

private:
    void send(std::uint32_t type, const QByteArray& payload = {});
    void read(const QByteArray& bytes);
    void received(std::uint32_t type, const QByteArray& payload);

    std::unique_ptr<LocalStream> m_stream; // where there is a sway
    QByteArray m_unread;
    QByteArray m_workspaces; // the latest answers
    std::vector<FloatingWindowSystem::ReservedArea> m_reserved;
};

/// From the answers to GET_WORKSPACES and GET_OUTPUTS; nothing where they are not what the protocol says.
std::vector<FloatingWindowSystem::ReservedArea> swayReservedAreas(const QByteArray& workspaces,
                                                                  const QByteArray& outputs);

} // namespace brevlin
