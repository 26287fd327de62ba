#include "platform/freedesktop/instance/instance_socket.h"

#include "platform/freedesktop/event_loop/local_stream.h"

#include <vector>

namespace brevlin {

namespace {

constexpr char separator = '\t';

} // namespace

QByteArray socketLine(const SocketRequest& request)
{
    std::vector<std::string> arguments;
    for (const QString& argument : request.arguments) {
        arguments.push_back(argument.toStdString());
    }
    return QByteArray::fromStdString(
        socketLine(request.token.toStdString(), request.action.toStdString(), arguments));
}

std::optional<SocketRequest> socketRequest(const QByteArray& line)
{
    if (!line.endsWith('\n')) {
        return std::nullopt;
    }
    const QList<QByteArray> parts = line.chopped(1).split(separator);
    SocketRequest request{QString::fromUtf8(parts.value(0)), QString::fromUtf8(parts.value(1)), {}};
    for (const QByteArray& part : parts.mid(2)) {
        request.arguments << QString::fromUtf8(QByteArray::fromPercentEncoding(part));
    }
    return request;
}

QByteArray askInstance(const std::string& socketPath, const SocketRequest& request,
                       std::chrono::milliseconds patience)
{
    LocalStream stream(socketPath);
    stream.send(socketLine(request));
    return stream.waitForBytes(patience);
}

} // namespace brevlin
