#include "platform/freedesktop/session/application_instance.h"

#include "platform/freedesktop/bus/message_bus.h"
#include "platform/freedesktop/event_loop/local_stream.h"
#include "platform/freedesktop/session/activation_service.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace brevlin {

namespace {

const QString busName = QStringLiteral("com.quillmark.Brevlin");
const QString objectPath = QStringLiteral("/com/quillmark/Brevlin");

constexpr int answerTimeout = 3000; // milliseconds; only a second start waits, with nothing else to do
constexpr int attempts = 20;
constexpr unsigned long attemptInterval = 100; // milliseconds
// A line to the socket is the token, and behind this the action if there is one.
constexpr QLatin1Char separator('\t');
constexpr QByteArrayView acknowledgement{"ok"};
constexpr QByteArrayView farewell{"ending"}; // which takes as long as the disk does

void createFolder(const std::string& path)
{
    std::error_code ignored; // a folder that cannot be made cannot be written by anybody else either
    std::filesystem::create_directories(std::filesystem::path{path}.parent_path(), ignored);
    mkdir(path.c_str(), S_IRWXU);
}

// Where everybody may write, somebody else may have put a folder or a link in the way.
bool isInStrangersHands(const std::string& path, const struct stat& folder)
{
    const std::string parent = std::filesystem::path{path}.parent_path().string();
    struct stat status = {};
    if (stat(parent.c_str(), &status) != 0 || (status.st_mode & S_IWOTH) == 0) {
        return false;
    }
    const bool isLink = lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode);
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    return isLink || folder.st_uid != geteuid() || (folder.st_mode & others) != 0;
}

} // namespace

QString launchToken()
{
    const QString token = qEnvironmentVariable("DESKTOP_STARTUP_ID");
    return token.isEmpty() ? qEnvironmentVariable("XDG_ACTIVATION_TOKEN") : token;
}

ApplicationInstance::ApplicationInstance(MessageBus& bus, std::vector<std::string> folders,
                                         std::optional<std::string> runtimeFolder, QObject* parent)
    : QObject(parent), m_bus(bus), m_folders(std::move(folders)), m_runtimeFolder(std::move(runtimeFolder))
{}

ApplicationInstance::~ApplicationInstance()
{
    releaseFolders();
}

void ApplicationInstance::releaseFolders()
{
    for (const int lock : std::exchange(m_locks, {})) {
        close(lock);
    }
}

ApplicationInstance::Claim ApplicationInstance::claim(const InstanceRequest& request)
{
    // Another process may hold the lock and not answer yet, or be about to end.
    for (int attempt = 0; attempt < attempts;) {
        const Lock lock = lockFolders();
        if (lock == Lock::failed) {
            return Claim::failed;
        }
        if (lock == Lock::held && askThroughBus(request)) {
            return Claim::activated;
        }
        const QByteArray answer = answerOfSocket(request);
        if (answer.startsWith(acknowledgement.data())) {
            return Claim::activated;
        }
        if (lock == Lock::taken) {
            m_bus.whenOpen(this, [this] { serveBus(); });
            serveSocket();
            return Claim::first;
        }
        attempt += answer.startsWith(farewell.data()) ? 0 : 1;
        QThread::msleep(attemptInterval);
    }
    return Claim::unreachable;
}

void ApplicationInstance::retire()
{
    if (m_service) {
        // Not by Qt's own interface, which waits for the bus.
        QDBusMessage release = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReleaseName"));
        release << busName;
        m_bus.connection().send(release);
        m_service.reset();
    }
    m_isRetired = true;
}

ApplicationInstance::Lock ApplicationInstance::lockFolders()
{
    releaseFolders();
    Lock result = Lock::taken;
    for (const std::string& folder : m_folders) {
        if (result == Lock::taken) {
            result = lockFolder(folder);
        }
    }
    return result;
}

ApplicationInstance::Lock ApplicationInstance::lockFolder(const std::string& folder)
{
    createFolder(folder);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return Lock::taken; // nobody can write there
    }
    m_locks.push_back(descriptor);
    struct stat status = {};
    fstat(descriptor, &status);
    if (isInStrangersHands(folder, status)) {
        m_failure = folder + ": " + std::generic_category().message(EPERM);
        return Lock::failed;
    }
    // Two descriptors of one folder would shut each other out.
    const bool isLocked = std::any_of(m_locks.begin(), m_locks.end() - 1, [&](int other) {
        struct stat otherStatus = {};
        fstat(other, &otherStatus);
        return otherStatus.st_dev == status.st_dev && otherStatus.st_ino == status.st_ino;
    });
    if (isLocked) {
        return Lock::taken;
    }
    // The kernel lets go of it however the process ends. QLockFile would leave a file in the user's folder,
    // and takes a lock for forsaken by the number of a process that another machine or container may have.
    int locked = 0;
    do {
        locked = flock(descriptor, LOCK_EX | LOCK_NB);
    } while (locked != 0 && errno == EINTR);
    if (locked == 0) {
        return Lock::taken;
    }
    if (errno == EWOULDBLOCK) {
        return Lock::held;
    }
    m_failure = folder + ": " + std::generic_category().message(errno) + " (flock)";
    return Lock::failed;
}

void ApplicationInstance::serveBus()
{
    // The object first: whoever sees the name may call at once.
    m_service = std::make_unique<ActivationService>(m_bus, objectPath);
    connect(m_service.get(), &ActivationService::requested, this, &ApplicationInstance::requested);
    m_bus.connection().interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                                    QDBusConnectionInterface::DontAllowReplacement);
}

bool ApplicationInstance::askThroughBus(const InstanceRequest& request) const
{
    const QDBusConnection bus = m_bus.connection();
    if (!m_bus.isOpen() || !bus.interface()->isServiceRegistered(busName)) {
        return false;
    }
    QVariantMap platformData;
    if (!request.token.isEmpty()) {
        platformData = {{QStringLiteral("desktop-startup-id"), request.token},
                        {QStringLiteral("activation-token"), request.token}};
    }
    const bool isForWindow = request.action.isEmpty();
    QDBusMessage message = QDBusMessage::createMethodCall(busName, objectPath, ActivationService::interface,
                                                          isForWindow ? QStringLiteral("Activate")
                                                                      : QStringLiteral("ActivateAction"));
    if (!isForWindow) {
        message << request.action << QVariantList();
    }
    message << platformData;
    return bus.call(message, QDBus::Block, answerTimeout).type() == QDBusMessage::ReplyMessage;
}

void ApplicationInstance::serveSocket()
{
    if (!m_runtimeFolder) {
        return;
    }
    // The lock is ours, so a socket file that is there was left by a process that is gone.
    m_listener = std::make_unique<LocalListener>(socketPath());
    connect(m_listener.get(), &LocalListener::connected, this, [this](LocalStream* stream) {
        connect(stream, &LocalStream::closed, stream, &QObject::deleteLater);
        connect(stream, &LocalStream::received, this,
                [this, stream](const QByteArray& bytes) { answerSocket(*stream, bytes); });
    });
}

// Whoever asks sends one line at once.
void ApplicationInstance::answerSocket(LocalStream& stream, const QByteArray& bytes)
{
    const bool isLine = bytes.endsWith('\n');
    const QStringList parts = QString::fromUtf8(bytes).chopped(1).split(separator);
    const QByteArrayView answer = m_isRetired ? farewell : acknowledgement;
    if (isLine) {
        stream.send(answer.toByteArray());
    }
    stream.close();
    if (isLine && !m_isRetired) {
        Q_EMIT requested({parts.value(1), parts.constFirst()});
    }
}

QByteArray ApplicationInstance::answerOfSocket(const InstanceRequest& request) const
{
    if (!m_runtimeFolder) {
        return {};
    }
    LocalStream stream(socketPath());
    const QString line =
        request.action.isEmpty() ? request.token : request.token + separator + request.action;
    stream.send(line.toUtf8() + '\n');
    return stream.waitForBytes(std::chrono::milliseconds(answerTimeout));
}

std::string ApplicationInstance::socketPath() const
{
    // By the folders, so that programs of one user with different homes do not meet.
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const std::string& folder : m_folders) {
        hash.addData(QByteArray::fromStdString(folder + '\n'));
    }
    return *m_runtimeFolder + "/brevlin-" + hash.result().toHex().left(16).toStdString();
}

} // namespace brevlin
