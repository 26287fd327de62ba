#pragma once

#include "command/verbs/bus_link.h"
#include "command/verbs/socket_link.h"

#include <memory>
#include <optional>

namespace brevlin {

/// The ways to the running program, in the order in which they are tried.
class SessionLinks final
{
public:
    /// Where the environment names no folder for sockets or no bus, as for cron and over ssh, it is made to
    /// name those that are found, so that a program that is started from here finds them too.
    SessionLinks();

    /// Nothing where no program runs.
    std::optional<ControlAnswer> ask(const ControlRequest& request);

    /// None where no bus answers.
    BusLink* bus() { return m_bus.get(); }
    SocketLink& socket() { return m_socket; }
    /// The folder in which the program's socket appears; empty where there is none.
    const std::string& socketFolder() const { return m_socketFolder; }

private:
    std::string m_socketFolder;
    SocketLink m_socket;
    std::unique_ptr<BusLink> m_bus;
};

} // namespace brevlin
