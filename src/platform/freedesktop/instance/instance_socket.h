#pragma once

#include "platform/freedesktop/socket/socket_line.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <string>

namespace brevlin {

// The local socket of the running program: one line asks, one line answers.

/// How often, and how long in between, a process that is not answered looks again: the other one may be about
/// to listen, or to end.
inline constexpr int instanceAttempts = 20;
inline constexpr unsigned long instanceAttemptInterval = 100; // milliseconds

/// With arguments it is a command, else it asks for the window.
struct SocketRequest
{
    QString token; ///< of the user's action; empty where there is none
    QString action;
    QStringList arguments;
};

QByteArray socketLine(const SocketRequest& request);
/// Nothing for what is no whole line.
std::optional<SocketRequest> socketRequest(const QByteArray& line);

/// Waits for the answer as long as that; empty where nobody gives one.
QByteArray askInstance(const std::string& socketPath, const SocketRequest& request,
                       std::chrono::milliseconds patience);

} // namespace brevlin
