#pragma once

#include "platform/freedesktop/session/application_instance.h"

#include <QObject>

#include <cstdint>
#include <vector>

namespace brevlin {

class RemoteControl;

/// Answers what comes over the program's own socket, for sessions without a bus.
class RemoteDesk final : public QObject
{
public:
    explicit RemoteDesk(RemoteControl& control, QObject* parent = nullptr);

    /// The arguments are a verb and what belongs to it.
    void carryOut(const QStringList& arguments, const ApplicationInstance::Answer& answer);

private:
    QByteArray status() const;
    void tellWaiting();

    RemoteControl& m_control;
    std::uint64_t m_revision = 1; // of the status, without the time that passes
    std::vector<ApplicationInstance::Answer> m_waiting;
};

} // namespace brevlin
