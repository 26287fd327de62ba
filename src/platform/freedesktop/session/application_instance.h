#pragma once

#include "platform/freedesktop/instance/folder_lock.h"
#include "platform/freedesktop/session/instance_request.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brevlin {

class ActivationService;
class BusInterface;
class BusObject;
class LocalListener;
class LocalStream;
class MessageBus;
struct SocketRequest;

/// Makes sure that one process alone works on the user's files, and lets a second start reach it. The lock on
/// the folders decides; the D-Bus name and, where there is no bus, a local socket carry the activation. The
/// socket also finds a process whose folders were deleted and made anew, so that its locks are gone.
class ApplicationInstance final : public QObject
{
    Q_OBJECT

public:
    enum class Claim {
        first,       ///< this process owns the files
        activated,   ///< another one does and was brought to the front
        unreachable, ///< another one does, but nothing answered
        failed       ///< nobody can tell; failure() says why
    };

    /// The folders that must not be written by two processes; they are created when they are missing. The
    /// socket lies in the runtime folder; where there is none, only the bus reaches this process.
    ApplicationInstance(MessageBus& bus, std::vector<std::string> folders,
                        std::optional<std::string> runtimeFolder, QObject* parent = nullptr);
    ~ApplicationInstance() override;

    /// Where another process owns the files, the request goes to it. Where this one comes to own them, it is
    /// the caller's to follow.
    Claim claim(const InstanceRequest& request);
    /// Serves the interface on the object that carries the application's name, as long as this process has
    /// it. To be called after claim() and before the event loop runs.
    void serve(BusInterface& interface);
    /// The program is about to end: a start from now on waits until it is gone.
    void retire();
    /// In the system's words.
    const std::string& failure() const { return m_lock.failure(); }

    /// What another process asks to be done, and whom to tell how it went: once, at any time, in one line.
    struct Command
    {
        QString name;
        QStringList arguments;
    };
    using Answer = std::function<void(const QByteArray& line)>;
    /// Whom commands reach; where there is nobody, they are refused.
    void setCommandHandler(std::function<void(const Command&, const Answer&)> handler)
    {
        m_commandHandler = std::move(handler);
    }

Q_SIGNALS:
    void requested(const InstanceRequest& request);

private:
    void serveBus();
    void serveSocket();
    bool askThroughBus(const InstanceRequest& request) const;
    /// Empty where nobody answers.
    QByteArray answerOfSocket(const InstanceRequest& request) const;
    void answerSocket(LocalStream& stream, const QByteArray& bytes);
    void answerCommand(LocalStream& stream, const SocketRequest& request);
    std::string socketPath() const;

    MessageBus& m_bus;
    FolderLock m_lock;
    std::optional<std::string> m_runtimeFolder;
    bool m_isRetired = false;
    std::function<void(const Command&, const Answer&)> m_commandHandler;
    std::unique_ptr<BusObject> m_object;
    std::unique_ptr<ActivationService> m_service;
    std::unique_ptr<LocalListener> m_listener;
};

/// What the desktop gave to the start of this process: the token or startup identifier of the user's action.
/// To be asked before the application object is made, which takes it out of the environment.
QString launchToken();

} // namespace brevlin
