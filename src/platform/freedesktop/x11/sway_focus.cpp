#include "platform/freedesktop/x11/sway_focus.h"

#include <QByteArray>
#include <QLocalSocket>

namespace brevlin {

void askSwayToFocus(std::uint32_t window)
{
    const QString path = qEnvironmentVariable("SWAYSOCK");
    if (path.isEmpty()) {
        return;
    }
    // i3's protocol, https://i3wm.org/docs/ipc.html: length and type in the byte order of the machine.
    constexpr std::uint32_t runCommand = 0;
    const QByteArray command = "[id=" + QByteArray::number(window) + "] focus";
    const auto length = static_cast<std::uint32_t>(command.size());
    QByteArray message("i3-ipc");
    message.append(reinterpret_cast<const char*>(&length), sizeof length);
    message.append(reinterpret_cast<const char*>(&runCommand), sizeof runCommand);
    message.append(command);

    auto* socket = new QLocalSocket;
    QObject::connect(socket, &QLocalSocket::connected, socket, [socket, message] { socket->write(message); });
    QObject::connect(socket, &QLocalSocket::readyRead, socket, &QLocalSocket::disconnectFromServer);
    QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QLocalSocket::errorOccurred, socket, &QObject::deleteLater);
    socket->connectToServer(path);
}

} // namespace brevlin
