#include "platform/freedesktop/session/application_instance.h"

#include "platform/freedesktop/bus/bus_object.h"
#include "platform/freedesktop/bus/message_bus.h"
#include "platform/freedesktop/event_loop/local_stream.h"
#include "platform/freedesktop/instance/instance_socket.h"
#include "platform/freedesktop/session/activation_service.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QPointer>
#include <QThread>

#include <chrono>
#include <utility>

namespace brevlin {

namespace {

const QString busName = QStringLiteral("com.quillmark.Brevlin");
const QString objectPath = QStringLiteral("/com/quillmark/Brevlin");

constexpr int answerTimeout = 3000; // milliseconds; only a second start waits, with nothing else to do
constexpr std::chrono::milliseconds socketPatience{answerTimeout};

} // namespace

QString launchToken()
{
    const QString token = qEnvironmentVariable("DESKTOP_STARTUP_ID");
    return token.isEmpty() ? qEnvironmentVariable("XDG_ACTIVATION_TOKEN") : token;
}

ApplicationInstance::ApplicationInstance(MessageBus& bus, std::vector<std::string> folders,
                                         std::optional<std::string> runtimeFolder, QObject* parent)
    : QObject(parent), m_bus(bus), m_lock(std::move(folders)), m_runtimeFolder(std::move(runtimeFolder))
{}

ApplicationInstance::~ApplicationInstance() = default;

ApplicationInstance::Claim ApplicationInstance::claim(const InstanceRequest& request)
{
    // Another process may hold the lock and not answer yet, or be about to end.
    for (int attempt = 0; attempt < instanceAttempts;) {
        const FolderLock::Result lock = m_lock.take();
        if (lock == FolderLock::Result::failed) {
            return Claim::failed;
        }
        if (lock == FolderLock::Result::held && askThroughBus(request)) {
            return Claim::activated;
        }
        const QByteArray answer = answerOfSocket(request);
        if (answer.startsWith(socketAnswer::done)) {
            return Claim::activated;
        }
        if (lock == FolderLock::Result::taken) {
            serveBus();
            serveSocket();
            return Claim::first;
        }
        attempt += answer.startsWith(socketAnswer::ending) ? 0 : 1;
        QThread::msleep(instanceAttemptInterval);
    }
    return Claim::unreachable;
}

void ApplicationInstance::retire()
{
    if (m_object && m_bus.isOpen()) {
        // Not by Qt's own interface, which waits for the bus.
        QDBusMessage release = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReleaseName"));
        release << busName;
        m_bus.connection().send(release);
    }
    m_object.reset();
    m_isRetired = true;
}

void ApplicationInstance::serve(BusInterface& interface)
{
    if (m_object) {
        m_object->add(interface);
    }
}

void ApplicationInstance::serveBus()
{
    m_service = std::make_unique<ActivationService>();
    connect(m_service.get(), &ActivationService::requested, this, &ApplicationInstance::requested);
    // The object first: whoever sees the name may call at once.
    m_object = std::make_unique<BusObject>(m_bus, objectPath);
    m_object->add(*m_service);
    m_bus.whenOpen(m_object.get(), [this] {
        m_bus.connection().interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                                        QDBusConnectionInterface::DontAllowReplacement);
    });
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
    const std::optional<SocketRequest> request = socketRequest(bytes);
    if (request && !m_isRetired && !request->arguments.isEmpty()) {
        answerCommand(stream, *request);
        return;
    }
    if (request) {
        stream.send(m_isRetired ? socketAnswer::ending : socketAnswer::done);
    }
    stream.close();
    if (request && !m_isRetired) {
        Q_EMIT requested({request->action, request->token});
    }
}

void ApplicationInstance::answerCommand(LocalStream& stream, const SocketRequest& request)
{
    // Who asked may be gone before the answer comes.
    const auto answer = [asking = QPointer<LocalStream>(&stream)](const QByteArray& line) {
        if (asking) {
            asking->send(line);
            asking->close();
        }
    };
    if (m_commandHandler) {
        m_commandHandler({request.action, request.arguments}, answer);
    } else {
        answer(socketAnswer::refused);
    }
}

QByteArray ApplicationInstance::answerOfSocket(const InstanceRequest& request) const
{
    return m_runtimeFolder ? askInstance(socketPath(), {request.token, request.action, {}}, socketPatience)
                           : QByteArray();
}

std::string ApplicationInstance::socketPath() const
{
    return programSocketPath(*m_runtimeFolder, m_lock.folders());
}

} // namespace brevlin
