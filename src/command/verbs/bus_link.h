#pragma once

#include "command/verbs/timer_link.h"

#include <memory>
#include <string>
#include <vector>

struct DBusConnection;
struct DBusMessage;

namespace brevlin {

/// Where the session's bus may be, best first: as the environment says, in the folder for the user's sockets,
/// and where that folder is on most systems.
std::vector<std::string> sessionBusCandidates();

/// The program's interface on the session bus. Without Qt, for a verb is to be done before that would be
/// loaded.
class BusLink final : public TimerLink
{
public:
    /// The first of the addresses where a bus answers; nothing where none does.
    static std::unique_ptr<BusLink> open(const std::vector<std::string>& addresses);
    ~BusLink() override;
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    const std::string& address() const { return m_address; }
    std::optional<ControlAnswer> ask(const ControlRequest& request) override;
    /// Has the bus start the program; false where it does not know how to, or could not.
    bool startProgram();
    /// A value of the environment that the session's services get; empty where nobody tells.
    std::string sessionVariable(const std::string& name);

    /// From now on news() tells of changes.
    void watch();
    /// To be polled for input; -1 once the bus is gone.
    int descriptor() const;
    /// Takes what has come; whether the program may have changed, come or gone.
    bool news();

private:
    struct ReleaseMessage
    {
        void operator()(DBusMessage* message) const;
    };
    using Message = std::unique_ptr<DBusMessage, ReleaseMessage>;

    BusLink(DBusConnection* connection, std::string address);
    Message reply(DBusMessage* question, std::chrono::milliseconds patience);

    DBusConnection* m_connection;
    std::string m_address;
};

} // namespace brevlin
