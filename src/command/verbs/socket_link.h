#pragma once

#include "command/verbs/timer_link.h"
#include "platform/freedesktop/files/file_descriptor.h"

#include <string>

namespace brevlin {

/// The program's own socket, for sessions without a bus.
class SocketLink final : public TimerLink
{
public:
    explicit SocketLink(std::string path) : m_path(std::move(path)) {}

    std::optional<ControlAnswer> ask(const ControlRequest& request) override;

    /// Asks for the status once it is another one than this; false where no program is there.
    bool await(std::uint64_t revision);
    /// To be polled for input until the answer, or the end of the program, comes; -1 while none is awaited.
    int descriptor() const { return m_awaited.get(); }
    void forget() { m_awaited = FileDescriptor(); }
    /// Takes what has come: the status, or nothing where the program is gone.
    std::optional<ControlAnswer> awaited();

private:
    FileDescriptor send(const ControlRequest& request) const;

    std::string m_path;
    FileDescriptor m_awaited;
};

} // namespace brevlin
