#include "command/verbs/bus_link.h"

#include "core/timer_verb.h"

#include <dbus/dbus.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace brevlin {

namespace {

constexpr const char* busName = "com.quillmark.Brevlin";
constexpr const char* objectPath = "/com/quillmark/Brevlin";
constexpr const char* timerInterface = "com.quillmark.Brevlin.Timer1";
constexpr const char* refusedError = "com.quillmark.Brevlin.Error.Refused";
// A bus answers within a millisecond.
constexpr std::chrono::milliseconds busPatience{1000};
// A start on a machine that has just been switched on.
constexpr std::chrono::seconds startPatience{25};

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

void appendOption(DBusMessageIter& dictionary, const char* key, const std::string& text)
{
    DBusMessageIter entry;
    DBusMessageIter value;
    const char* content = text.c_str();
    dbus_message_iter_open_container(&dictionary, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
    dbus_message_iter_append_basic(&entry, DBUS_TYPE_STRING, &key);
    dbus_message_iter_open_container(&entry, DBUS_TYPE_VARIANT, "s", &value);
    dbus_message_iter_append_basic(&value, DBUS_TYPE_STRING, &content);
    dbus_message_iter_close_container(&entry, &value);
    dbus_message_iter_close_container(&dictionary, &entry);
}

void appendOptions(DBusMessageIter& arguments,
                   const std::vector<std::pair<const char*, std::string>>& options)
{
    DBusMessageIter dictionary;
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "{sv}", &dictionary);
    for (const auto& [key, text] : options) {
        appendOption(dictionary, key, text);
    }
    dbus_message_iter_close_container(&arguments, &dictionary);
}

void appendText(DBusMessageIter& arguments, const std::string& text)
{
    const char* content = text.c_str();
    dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &content);
}

std::string methodName(const std::string& word)
{
    if (word == controlWord::intention) {
        return "SetIntention";
    }
    std::string name = word;
    name.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    return name;
}

DBusMessage* methodCall(const ControlRequest& request)
{
    DBusMessage* message =
        dbus_message_new_method_call(busName, objectPath, timerInterface, methodName(request.word).c_str());
    dbus_message_set_auto_start(message, FALSE);
    DBusMessageIter arguments;
    dbus_message_iter_init_append(message, &arguments);
    if (request.word == rawValue(TimerVerb::start)) {
        std::vector<std::pair<const char*, std::string>> options;
        for (const std::string& intention : request.arguments) {
            options.emplace_back("intention", intention);
        }
        appendOptions(arguments, options);
    } else {
        for (const std::string& argument : request.arguments) {
            appendText(arguments, argument);
        }
    }
    if (request.word == controlWord::show) {
        appendOptions(arguments, request.token.empty() ? std::vector<std::pair<const char*, std::string>>{}
                                                       : std::vector<std::pair<const char*, std::string>>{
                                                             {"activation-token", request.token},
                                                             {"desktop-startup-id", request.token}});
    }
    return message;
}

ControlAnswer answerOf(DBusMessage* reply)
{
    ControlAnswer answer;
    const char* text = nullptr;
    const char* language = nullptr;
    if (dbus_message_get_type(reply) == DBUS_MESSAGE_TYPE_ERROR) {
        dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
        answer.kind = dbus_message_is_error(reply, refusedError) == TRUE ? ControlAnswer::Kind::refused
                                                                         : ControlAnswer::Kind::unknown;
        answer.text = text == nullptr ? "" : text;
    } else if (dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_STRING, &language,
                                     DBUS_TYPE_INVALID) == TRUE) {
        answer = {ControlAnswer::Kind::status, text, language, 0};
    } else {
        answer.kind = ControlAnswer::Kind::done;
    }
    return answer;
}

bool isAboutNobody(DBusMessage* reply)
{
    // The bus says so of a program that ended before it answered.
    return dbus_message_is_error(reply, DBUS_ERROR_NO_REPLY) == TRUE ||
           dbus_message_is_error(reply, DBUS_ERROR_SERVICE_UNKNOWN) == TRUE ||
           dbus_message_is_error(reply, DBUS_ERROR_NAME_HAS_NO_OWNER) == TRUE;
}

} // namespace

std::vector<std::string> sessionBusCandidates()
{
    std::vector<std::string> candidates;
    const auto add = [&candidates](const std::string& address) {
        if (std::find(candidates.begin(), candidates.end(), address) == candidates.end()) {
            candidates.push_back(address);
        }
    };
    if (const std::string address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        add(address);
    }
    for (const std::string& folder :
         {variable("XDG_RUNTIME_DIR"), "/run/user/" + std::to_string(::getuid())}) {
        if (!folder.empty() && ::access((folder + "/bus").c_str(), W_OK) == 0) {
            add("unix:path=" + folder + "/bus");
        }
    }
    return candidates;
}

void BusLink::ReleaseMessage::operator()(DBusMessage* message) const
{
    dbus_message_unref(message);
}

std::unique_ptr<BusLink> BusLink::open(const std::vector<std::string>& addresses)
{
    for (const std::string& address : addresses) {
        DBusConnection* connection = dbus_connection_open_private(address.c_str(), nullptr);
        if (connection == nullptr) {
            continue;
        }
        dbus_connection_set_exit_on_disconnect(connection, FALSE);
        auto link = std::unique_ptr<BusLink>(new BusLink(connection, address));
        // Not by libdbus's own registration, which waits for a silent bus without an end.
        const Message hello{
            dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello")};
        if (link->reply(hello.get(), busPatience)) {
            return link;
        }
    }
    return nullptr;
}

BusLink::BusLink(DBusConnection* connection, std::string address)
    : m_connection(connection), m_address(std::move(address))
{}

BusLink::~BusLink()
{
    dbus_connection_close(m_connection);
    dbus_connection_unref(m_connection);
}

// Errors are replies, too. Nothing where none came.
BusLink::Message BusLink::reply(DBusMessage* question, std::chrono::milliseconds patience)
{
    DBusPendingCall* pending = nullptr;
    if (dbus_connection_send_with_reply(m_connection, question, &pending,
                                        static_cast<int>(patience.count())) == FALSE ||
        pending == nullptr) {
        return nullptr;
    }
    dbus_pending_call_block(pending);
    Message reply{dbus_pending_call_steal_reply(pending)};
    dbus_pending_call_unref(pending);
    // What libdbus makes up for want of a reply has no sender.
    return reply && dbus_message_get_sender(reply.get()) != nullptr ? std::move(reply) : nullptr;
}

std::optional<ControlAnswer> BusLink::ask(const ControlRequest& request)
{
    const Message question{methodCall(request)};
    const Message answer = reply(question.get(), linkPatience);
    if (!answer) {
        return ControlAnswer{};
    }
    return isAboutNobody(answer.get()) ? std::nullopt : std::optional{answerOf(answer.get())};
}

bool BusLink::startProgram()
{
    const Message question{dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                        DBUS_INTERFACE_DBUS, "StartServiceByName")};
    const char* name = busName;
    const dbus_uint32_t flags = 0;
    dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &name, DBUS_TYPE_UINT32, &flags,
                             DBUS_TYPE_INVALID);
    const Message answer = reply(question.get(), startPatience);
    return answer && dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN;
}

// https://www.freedesktop.org/software/systemd/man/latest/org.freedesktop.systemd1.html
std::string BusLink::sessionVariable(const std::string& name)
{
    const Message question{dbus_message_new_method_call(
        "org.freedesktop.systemd1", "/org/freedesktop/systemd1", "org.freedesktop.DBus.Properties", "Get")};
    dbus_message_set_auto_start(question.get(), FALSE);
    const char* interface = "org.freedesktop.systemd1.Manager";
    const char* property = "Environment";
    dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &property,
                             DBUS_TYPE_INVALID);
    const Message answer = reply(question.get(), busPatience);
    DBusMessageIter argument;
    if (!answer || dbus_message_has_signature(answer.get(), "v") == FALSE ||
        dbus_message_iter_init(answer.get(), &argument) == FALSE) {
        return {};
    }
    DBusMessageIter list;
    dbus_message_iter_recurse(&argument, &list);
    if (dbus_message_iter_get_arg_type(&list) != DBUS_TYPE_ARRAY ||
        dbus_message_iter_get_element_type(&list) != DBUS_TYPE_STRING) {
        return {};
    }
    DBusMessageIter each;
    dbus_message_iter_recurse(&list, &each);
    for (; dbus_message_iter_get_arg_type(&each) == DBUS_TYPE_STRING; dbus_message_iter_next(&each)) {
        const char* assignment = nullptr;
        dbus_message_iter_get_basic(&each, &assignment);
        if (std::string_view(assignment).starts_with(name + '=')) {
            return assignment + name.size() + 1;
        }
    }
    return {};
}

void BusLink::watch()
{
    const std::array<std::string, 2> rules{
        std::string("type='signal',sender='") + busName + "',path='" + objectPath +
            "',interface='org.freedesktop.DBus.Properties',member='PropertiesChanged',arg0='" +
            timerInterface + "'",
        std::string("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                    "member='NameOwnerChanged',arg0='") +
            busName + "'"};
    for (const std::string& rule : rules) {
        const Message question{
            dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "AddMatch")};
        const char* text = rule.c_str();
        dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
        reply(question.get(), busPatience);
    }
}

int BusLink::descriptor() const
{
    int descriptor = -1;
    const bool isConnected = dbus_connection_get_is_connected(m_connection) == TRUE;
    return isConnected && dbus_connection_get_unix_fd(m_connection, &descriptor) == TRUE ? descriptor : -1;
}

bool BusLink::news()
{
    dbus_connection_read_write(m_connection, 0);
    bool isAny = false;
    while (const Message message{dbus_connection_pop_message(m_connection)}) {
        isAny = isAny || dbus_message_get_type(message.get()) == DBUS_MESSAGE_TYPE_SIGNAL;
    }
    return isAny;
}

} // namespace brevlin
