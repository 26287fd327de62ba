#pragma once

#include "platform/freedesktop/session/instance_request.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

class ActivationService;
class LocalListener;
class LocalStream;
class MessageBus;

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
    /// The program is about to end: a start from now on waits until it is gone.
    void retire();
    /// In the system's words.
    const std::string& failure() const { return m_failure; }

Q_SIGNALS:
    void requested(const InstanceRequest& request);

private:
    enum class Lock { taken, held, failed };

    Lock lockFolders();
    void releaseFolders();
    Lock lockFolder(const std::string& folder);
    void serveBus();
    void serveSocket();
    bool askThroughBus(const InstanceRequest& request) const;
    /// Empty where nobody answers.
    QByteArray answerOfSocket(const InstanceRequest& request) const;
    void answerSocket(LocalStream& stream, const QByteArray& bytes);
    std::string socketPath() const;

    MessageBus& m_bus;
    std::vector<std::string> m_folders;
    std::optional<std::string> m_runtimeFolder;
    std::vector<int> m_locks; // descriptors of the locked folders
    bool m_isRetired = false;
    std::string m_failure;
    std::unique_ptr<ActivationService> m_service;
    std::unique_ptr<LocalListener> m_listener;
};

/// What the desktop gave to the start of this process: the token or startup identifier of the user's action.
/// To be asked before the application object is made, which takes it out of the environment.
QString launchToken();

} // namespace brevlin
