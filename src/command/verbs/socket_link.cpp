#include "command/verbs/socket_link.h"

#include "platform/freedesktop/socket/socket_line.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

/// The line that the program sends; less than one where it takes too long, and nothing where it is gone.
std::optional<std::string> readLine(int descriptor, std::chrono::milliseconds patience)
{
    std::string line;
    std::array<char, 4096> buffer{};
    while (!line.ends_with('\n')) {
        pollfd wait{descriptor, POLLIN, 0};
        if (::poll(&wait, 1, static_cast<int>(patience.count())) <= 0) {
            break;
        }
        const ssize_t size = ::read(descriptor, buffer.data(), buffer.size());
        if (size <= 0) {
            return std::nullopt;
        }
        line.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return line;
}

} // namespace

std::optional<ControlAnswer> SocketLink::ask(const ControlRequest& request)
{
    const FileDescriptor socket = send(request);
    if (!socket.isOpen()) {
        return std::nullopt;
    }
    const std::optional<std::string> line = readLine(socket.get(), linkPatience);
    // Who is about to end is as good as gone.
    return line && !line->starts_with(socketAnswer::ending) ? std::optional{controlAnswer(*line)}
                                                            : std::nullopt;
}

bool SocketLink::await(std::uint64_t revision)
{
    m_awaited = send({std::string(controlWord::await), {std::to_string(revision)}, {}});
    return m_awaited.isOpen();
}

std::optional<ControlAnswer> SocketLink::awaited()
{
    const FileDescriptor socket = std::exchange(m_awaited, FileDescriptor());
    const ControlAnswer answer = controlAnswer(readLine(socket.get(), linkPatience).value_or(std::string()));
    return answer.kind == ControlAnswer::Kind::status ? std::optional{answer} : std::nullopt;
}

FileDescriptor SocketLink::send(const ControlRequest& request) const
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (m_path.size() >= sizeof address.sun_path) {
        return {};
    }
    std::memcpy(address.sun_path, m_path.c_str(), m_path.size() + 1);
    FileDescriptor socket{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return {};
    }
    std::vector<std::string> arguments{request.word};
    arguments.insert(arguments.end(), request.arguments.begin(), request.arguments.end());
    if (request.word == controlWord::show) {
        arguments.push_back(request.token);
    }
    const std::string line = socketLine({}, controlCommandName, arguments);
    const ssize_t sent = ::send(socket.get(), line.data(), line.size(), MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(line.size()) ? std::move(socket) : FileDescriptor();
}

} // namespace brevlin
