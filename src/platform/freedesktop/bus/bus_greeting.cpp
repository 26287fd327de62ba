#include "platform/freedesktop/bus/bus_greeting.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <system_error>
#include <type_traits>

namespace brevlin {

namespace {

constexpr const char* accessibility = "org.a11y.Bus";
constexpr const char* accessibilityPath = "/org/a11y/bus";
constexpr const char* accessibilityStatus = "org.a11y.Status";

struct CloseConnection
{
    void operator()(DBusConnection* connection) const
    {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};

struct ReleaseMessage
{
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};

using Connection = std::unique_ptr<DBusConnection, CloseConnection>;
using Message = std::unique_ptr<DBusMessage, ReleaseMessage>;

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

Message answerTo(DBusConnection* connection, const Message& question)
{
    constexpr int forEver = std::numeric_limits<int>::max(); // libdbus's DBUS_TIMEOUT_INFINITE
    return Message{dbus_connection_send_with_reply_and_block(connection, question.get(), forEver, nullptr)};
}

// Neither libdbus's own connection to a bus nor its registration there: both wait for the bus under a lock
// which every other bus, and Qt, would then wait for.
Connection connectionTo(const std::string& address)
{
    Connection connection{dbus_connection_open_private(address.c_str(), nullptr)};
    if (connection) {
        dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);
        const Message hello{
            dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello")};
        if (!answerTo(connection.get(), hello)) {
            connection.reset();
        }
    }
    return connection;
}

bool isSet(DBusConnection* connection, const char* property)
{
    const Message question{dbus_message_new_method_call(accessibility, accessibilityPath,
                                                        "org.freedesktop.DBus.Properties", "Get")};
    dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &accessibilityStatus, DBUS_TYPE_STRING,
                             &property, DBUS_TYPE_INVALID);
    const Message answer = answerTo(connection, question);
    DBusMessageIter argument;
    if (!answer || dbus_message_has_signature(answer.get(), "v") == FALSE ||
        dbus_message_iter_init(answer.get(), &argument) == FALSE) {
        return false;
    }
    DBusMessageIter value;
    dbus_message_iter_recurse(&argument, &value);
    dbus_bool_t result = FALSE;
    if (dbus_message_iter_get_arg_type(&value) == DBUS_TYPE_BOOLEAN) {
        dbus_message_iter_get_basic(&value, &result);
    }
    return result == TRUE;
}

std::optional<std::string> accessibilityAddress(DBusConnection* connection)
{
    const Message question{
        dbus_message_new_method_call(accessibility, accessibilityPath, accessibility, "GetAddress")};
    const Message answer = answerTo(connection, question);
    const char* address = nullptr;
    if (!answer || dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_STRING, &address,
                                         DBUS_TYPE_INVALID) == FALSE) {
        return std::nullopt;
    }
    return address;
}

} // namespace

std::string sessionBusAddress()
{
    if (std::string address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return address;
    }
    const std::string socket = variable("XDG_RUNTIME_DIR") + "/bus";
    std::error_code ignored; // what cannot be looked at cannot be connected to either
    return std::filesystem::is_socket(socket, ignored) ? "unix:path=" + socket : "autolaunch:";
}

std::string systemBusAddress()
{
    const std::string address = variable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? "unix:path=/run/dbus/system_bus_socket" : address;
}

bool busAnswers(const std::string& address)
{
    return connectionTo(address) != nullptr;
}

bool accessibilityAnswers(const std::string& sessionAddress)
{
    const Connection session = connectionTo(sessionAddress);
    if (!session || dbus_bus_name_has_owner(session.get(), accessibility, nullptr) == FALSE) {
        return true;
    }
    // Its bus is started by asking for the address, so only those ask that would use it.
    const bool isReader = isSet(session.get(), "ScreenReaderEnabled");
    const bool isEnabled = isSet(session.get(), "IsEnabled");
    if (!isReader && !isEnabled) {
        return true;
    }
    const auto address = accessibilityAddress(session.get());
    return !address || busAnswers(*address);
}

} // namespace brevlin
