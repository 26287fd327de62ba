#include "platform/freedesktop/instance/instance_socket.h"

#include "platform/freedesktop/event_loop/local_stream.h"

#include <QCryptographicHash>

namespace brevlin {

namespace {

// Between the token, the action and the arguments. In these it is written in hexadecimal, as line breaks are.
constexpr char separator = '\t';

} // namespace

std::string instanceSocketPath(const std::string& runtimeFolder, const std::vector<std::string>& folders)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const std::string& folder : folders) {
        hash.addData(QByteArray::fromStdString(folder + '\n'));
    }
    return runtimeFolder + "/brevlin-" + hash.result().toHex().left(16).toStdString();
}

QByteArray socketLine(const SocketRequest& request)
{
    QByteArray line = request.token.toUtf8();
    if (!request.action.isEmpty()) {
        line += separator + request.action.toUtf8();
    }
    for (const QString& argument : request.arguments) {
        line += separator + argument.toUtf8().toPercentEncoding();
    }
    return line + '\n';
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
