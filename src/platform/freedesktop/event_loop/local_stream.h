#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <chrono>
#include <memory>
#include <string>

namespace brevlin {

/// One end of a connection to a local socket (https://man7.org/linux/man-pages/man7/unix.7.html). Nothing
/// here waits but where that is said. Qt's own local sockets come with its network and all that this loads, a
/// tenth of what a start links.
class LocalStream final : public QObject
{
    Q_OBJECT

public:
    /// Connects to the socket of this path. Where nobody listens there, or too many wait, the stream is
    /// closed from the beginning.
    explicit LocalStream(const std::string& path, QObject* parent = nullptr);
    /// Takes over a connected socket.
    explicit LocalStream(int descriptor, QObject* parent = nullptr);
    ~LocalStream() override;

    bool isOpen() const { return m_descriptor >= 0; }
    /// All of it at once, or the stream closes: what is said here is shorter than any socket's buffer.
    void send(const QByteArray& bytes);
    void close();
    /// Waits for bytes to come, and gives them; nothing where none came within this time.
    QByteArray waitForBytes(std::chrono::milliseconds longest);

Q_SIGNALS:
    void received(const QByteArray& bytes);
    /// The other end is gone, or something failed.
    void closed();

private:
    void listen();
    QByteArray readAvailable();

    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// Listens on a local socket that only this user can reach.
class LocalListener final : public QObject
{
    Q_OBJECT

public:
    /// A file that lies at the path is taken away first. Where the socket cannot be made, nobody ever comes.
    explicit LocalListener(const std::string& path, QObject* parent = nullptr);
    ~LocalListener() override;

Q_SIGNALS:
    /// The receiver owns the stream.
    void connected(brevlin::LocalStream* stream);

private:
    void accept();

    std::string m_path;
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace brevlin
