#include "platform/freedesktop/sway/sway_focus.h"

#include "platform/freedesktop/event_loop/local_stream.h"

namespace brevlin {

void askSwayToFocus(const QByteArray& criteria)
{
    const QString path = qEnvironmentVariable("SWAYSOCK");
    if (path.isEmpty()) {
        return;
    }
    // i3's protocol, https://i3wm.org/docs/ipc.html: length and type in the byte order of the machine.
    constexpr std::uint32_t runCommand = 0;
    const QByteArray command = "[" + criteria + "] focus";
    const auto length = static_cast<std::uint32_t>(command.size());
    QByteArray message("i3-ipc");
    message.append(reinterpret_cast<const char*>(&length), sizeof length);
    message.append(reinterpret_cast<const char*>(&runCommand), sizeof runCommand);
    message.append(command);

    auto* stream = new LocalStream(path.toStdString());
    QObject::connect(stream, &LocalStream::received, stream, &LocalStream::close);
    QObject::connect(stream, &LocalStream::closed, stream, &QObject::deleteLater);
    stream->send(message);
    if (!stream->isOpen()) {
        stream->deleteLater();
    }
}

} // namespace brevlin
