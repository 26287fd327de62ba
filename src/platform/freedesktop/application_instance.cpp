#include "platform/freedesktop/application_instance.h"

#include "platform/freedesktop/activation_service.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace brevlin {

namespace {

const QString busName = QStringLiteral("com.quillmark.Brevlin");
const QString objectPath = QStringLiteral("/com/quillmark/Brevlin");
const QString applicationInterface = QStringLiteral("org.freedesktop.Application");

constexpr int answerTimeout = 3000; // milliseconds; only a second start waits, with nothing else to do
constexpr int attempts = 20;
constexpr unsigned long attemptInterval = 100; // milliseconds
constexpr QByteArrayView acknowledgement{"ok"};

void createFolder(const std::string& path)
{
    std::error_code ignored; // a folder that cannot be made cannot be written by anybody else either
    std::filesystem::create_directories(std::filesystem::path{path}.parent_path(), ignored);
    mkdir(path.c_str(), S_IRWXU);
}

} // namespace

QString launchToken()
{
    const QString token = qEnvironmentVariable("DESKTOP_STARTUP_ID");
    return token.isEmpty() ? qEnvironmentVariable("XDG_ACTIVATION_TOKEN") : token;
}

ApplicationInstance::ApplicationInstance(std::vector<std::string> folders, QObject* parent)
    : QObject(parent), m_folders(std::move(folders))
{}

ApplicationInstance::~ApplicationInstance()
{
    for (const int lock : m_locks) {
        close(lock);
    }
}

ApplicationInstance::Claim ApplicationInstance::claim(const QString& token)
{
    if (lockFolders()) {
        serveBus();
        serveSocket();
        return Claim::first;
    }
    // The other process may hold the lock and not answer yet.
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (activateThroughBus(token) || activateThroughSocket(token)) {
            return Claim::activated;
        }
        QThread::msleep(attemptInterval);
    }
    return Claim::unreachable;
}

bool ApplicationInstance::lockFolders()
{
    for (const std::string& folder : m_folders) {
        createFolder(folder);
        const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) {
            continue;
        }
        m_locks.push_back(descriptor);
        // The kernel lets go of it however the process ends.
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            return false;
        }
    }
    return true;
}

void ApplicationInstance::serveBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    m_service = std::make_unique<ActivationService>();
    connect(m_service.get(), &ActivationService::activated, this, &ApplicationInstance::activationRequested);
    // The object first: whoever sees the name may call at once.
    bus.registerObject(objectPath, m_service.get(), QDBusConnection::ExportAllSlots);
    bus.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                     QDBusConnectionInterface::DontAllowReplacement);
}

bool ApplicationInstance::activateThroughBus(const QString& token) const
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(busName)) {
        return false;
    }
    QVariantMap platformData;
    if (!token.isEmpty()) {
        platformData = {{QStringLiteral("desktop-startup-id"), token},
                        {QStringLiteral("activation-token"), token}};
    }
    QDBusMessage message =
        QDBusMessage::createMethodCall(busName, objectPath, applicationInterface, QStringLiteral("Activate"));
    message << platformData;
    return bus.call(message, QDBus::Block, answerTimeout).type() == QDBusMessage::ReplyMessage;
}

void ApplicationInstance::serveSocket()
{
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        QLocalSocket* socket = m_server->nextPendingConnection();
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (!socket->canReadLine()) {
                return;
            }
            const QString token = QString::fromUtf8(socket->readLine().trimmed());
            socket->write(acknowledgement.data(), acknowledgement.size());
            socket->disconnectFromServer();
            Q_EMIT activationRequested(token);
        });
    });
    // The lock is ours, so a socket file that is there was left by a process that is gone.
    QLocalServer::removeServer(socketPath());
    m_server->listen(socketPath());
}

bool ApplicationInstance::activateThroughSocket(const QString& token) const
{
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(answerTimeout)) {
        return false;
    }
    socket.write(token.toUtf8() + '\n');
    return socket.waitForReadyRead(answerTimeout) && socket.readAll().startsWith(acknowledgement.data());
}

QString ApplicationInstance::socketPath() const
{
    // By the folders, so that programs of one user with different homes do not meet.
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const std::string& folder : m_folders) {
        hash.addData(QByteArray::fromStdString(folder + '\n'));
    }
    const QString name = QStringLiteral("brevlin-") + QString::fromLatin1(hash.result().toHex().left(16));
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QLatin1Char('/') + name;
}

} // namespace brevlin
