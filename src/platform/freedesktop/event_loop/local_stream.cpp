#include "platform/freedesktop/event_loop/local_stream.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace brevlin {

namespace {

constexpr int waitingLine = 64; // streams that nobody has accepted yet

int newSocket()
{
    return socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

/// Calls with the address of a path; fails for a path that is too long for one.
template <typename Call>
bool withAddress(const std::string& path, Call call)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return call(reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(sizeof address)) == 0;
}

void closeDescriptor(int& descriptor)
{
    if (const int old = std::exchange(descriptor, -1); old >= 0) {
        close(old);
    }
}

} // namespace

LocalStream::LocalStream(const std::string& path, QObject* parent) : LocalStream(newSocket(), parent)
{
    const bool isConnected = withAddress(path, [this](const sockaddr* address, socklen_t size) {
        return ::connect(m_descriptor, address, size);
    });
    if (!isConnected) {
        m_notifier.reset();
        closeDescriptor(m_descriptor);
    }
}

LocalStream::LocalStream(int descriptor, QObject* parent) : QObject(parent), m_descriptor(descriptor)
{
    if (m_descriptor >= 0) {
        m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &LocalStream::listen);
    }
}

LocalStream::~LocalStream()
{
    m_notifier.reset();
    closeDescriptor(m_descriptor);
}

void LocalStream::send(const QByteArray& bytes)
{
    if (isOpen() && ::send(m_descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                           MSG_NOSIGNAL) != bytes.size()) {
        close();
    }
}

void LocalStream::close()
{
    if (isOpen()) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater(); // it may be what calls
        closeDescriptor(m_descriptor);
        Q_EMIT closed();
    }
}

QByteArray LocalStream::waitForBytes(std::chrono::milliseconds longest)
{
    pollfd waited{m_descriptor, POLLIN, 0};
    return isOpen() && poll(&waited, 1, static_cast<int>(longest.count())) == 1 ? readAvailable()
                                                                                : QByteArray();
}

void LocalStream::listen()
{
    const QByteArray bytes = readAvailable();
    if (!bytes.isEmpty()) {
        Q_EMIT received(bytes);
    }
}

QByteArray LocalStream::readAvailable()
{
    QByteArray bytes;
    std::array<char, 4096> part;
    while (true) {
        const ssize_t count = read(m_descriptor, part.data(), part.size());
        if (count > 0) {
            bytes.append(part.data(), count);
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            // What has come is told before the end.
            QMetaObject::invokeMethod(this, &LocalStream::close, Qt::QueuedConnection);
            m_notifier->setEnabled(false);
            return bytes;
        } else if (errno == EAGAIN) {
            return bytes;
        }
    }
}

LocalListener::LocalListener(const std::string& path, QObject* parent)
    : QObject(parent), m_path(path), m_descriptor(newSocket())
{
    unlink(path.c_str());
    const bool isBound = withAddress(
        path, [this](const sockaddr* address, socklen_t size) { return bind(m_descriptor, address, size); });
    if (!isBound || chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0 || ::listen(m_descriptor, waitingLine) != 0) {
        closeDescriptor(m_descriptor);
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &LocalListener::accept);
}

LocalListener::~LocalListener()
{
    if (m_descriptor >= 0) {
        m_notifier.reset();
        closeDescriptor(m_descriptor);
        unlink(m_path.c_str());
    }
}

void LocalListener::accept()
{
    const int descriptor = accept4(m_descriptor, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (descriptor >= 0) {
        Q_EMIT connected(new LocalStream(descriptor, this));
    }
}

} // namespace brevlin
