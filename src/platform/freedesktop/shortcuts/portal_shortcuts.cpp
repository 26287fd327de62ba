#include "platform/freedesktop/shortcuts/portal_shortcuts.h"

#include "platform/freedesktop/bus/bus_greeting.h"
#include "platform/freedesktop/bus/bus_values.h"

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace brevlin {

namespace {

const QString connectionName = QStringLiteral("brevlin-shortcuts");
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString registry = QStringLiteral("org.freedesktop.host.portal.Registry");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

const QString applicationName = QStringLiteral("com.quillmark.Brevlin");
// Some desktops remember the keys by it, so it never changes.
const QString sessionToken = QStringLiteral("brevlin");
constexpr uint firstVersionThatConfigures = 2;
// The user may think about it as long as he likes.
constexpr int forEver = std::numeric_limits<int>::max();

QDBusMessage portalCall(const QString& interfaceName, const QString& method)
{
    return QDBusMessage::createMethodCall(service, path, interfaceName, method);
}

// These know the keys of an earlier run only once they are told of them again, and ask the user just for what
// he has not seen yet: https://gitlab.gnome.org/GNOME/xdg-desktop-portal-gnome,
// https://github.com/hyprwm/xdg-desktop-portal-hyprland. Others would show their dialog.
bool asksForNewKeysAlone()
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return desktops.contains(QLatin1String("GNOME")) || desktops.contains(QLatin1String("Hyprland"));
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const BusShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.values;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.values;
    argument.endStructure();
    return argument;
}

PortalShortcuts::PortalShortcuts(std::string busAddress, GlobalShortcuts::Observer observer)
    : m_address(std::move(busAddress)), m_observer(std::move(observer))
{
    qDBusRegisterMetaType<BusShortcut>();
    qDBusRegisterMetaType<BusShortcuts>();
}

PortalShortcuts::~PortalShortcuts()
{
    if (m_bus && m_bus->isOpen()) {
        QDBusConnection::disconnectFromBus(connectionName); // which ends the session
    }
}

void PortalShortcuts::look()
{
    if (!m_bus) {
        m_inquiry = std::make_unique<BusInquiry>([address = m_address] { return busAnswers(address); });
        m_bus = std::make_unique<MessageBus>(*m_inquiry, [address = QString::fromStdString(m_address)] {
            return QDBusConnection::connectToBus(address, connectionName);
        });
        m_bus->whenOpen(this, [this] { serve(); });
    } else if (m_isPresent) {
        proceed();
    } else if (m_bus->isOpen()) {
        meet();
    }
}

void PortalShortcuts::serve()
{
    QDBusConnection bus = m_bus->connection();
    bus.connect(service, QString(), requestInterface, QStringLiteral("Response"), this,
                SLOT(responded(QDBusMessage)));
    bus.connect(service, path, interface, QStringLiteral("Activated"), this, SLOT(activated(QDBusMessage)));
    bus.connect(service, path, interface, QStringLiteral("ShortcutsChanged"), this,
                SLOT(shortcutsChanged(QDBusMessage)));
    bus.connect(service, QString(), sessionInterface, QStringLiteral("Closed"), this,
                SLOT(sessionClosed(QDBusMessage)));
    auto* watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& oldOwner, const QString& newOwner) {
                if (!oldOwner.isEmpty()) {
                    portalVanished();
                }
                if (!newOwner.isEmpty()) {
                    meet();
                }
            });
    meet();
}

// Newer portals want a name from a program without a sandbox, older ones have no such interface.
void PortalShortcuts::meet()
{
    QDBusMessage message = portalCall(registry, QStringLiteral("Register"));
    message << applicationName << QVariantMap();
    m_bus->call(message, this, [this](const QDBusMessage& /*answer*/) { askVersion(); });
}

void PortalShortcuts::askVersion()
{
    QDBusMessage message = portalCall(properties, QStringLiteral("Get"));
    message << interface << QStringLiteral("version");
    m_bus->call(message, this, [this](const QDBusMessage& answer) {
        const auto value = busArgument<QDBusVariant>(answer);
        const uint version = value ? busValue<uint>(value->variant()).value_or(0) : 0;
        m_isPresent = version > 0;
        if (std::exchange(m_version, version) != version) {
            m_observer.changed();
        }
        proceed();
    });
}

// What is to be done next, if anything.
void PortalShortcuts::proceed()
{
    if (m_isBusy || !m_isPresent) {
        if (!m_isPresent && m_isDialogOpen) {
            endDialog(Response::failed);
        }
        return;
    }
    const bool isKnown = m_hasBound || m_hasListed;
    if (m_session.isEmpty()) {
        if (m_isWanted || m_isDialogOpen) {
            openSession();
        }
    } else if (m_isDialogOpen && isKnown && m_version >= firstVersionThatConfigures) {
        configure();
    } else if (m_isDialogOpen && m_hasBound) {
        closeSession([this] { proceed(); });
    } else if (m_isDialogOpen || (!isKnown && asksForNewKeysAlone())) {
        bind();
    }
}

// The new one of the same name, if there is any, tells that it has come.
void PortalShortcuts::portalVanished()
{
    m_requests.clear();
    m_isPresent = false;
    m_isBusy = false;
    m_isDialogOpen = false;
    forgetSession();
    m_observer.changed();
}

void PortalShortcuts::forgetSession()
{
    m_session.clear();
    m_hasBound = false;
    m_hasListed = false;
    m_triggers = {};
}

// The response may come before the answer to the call, so its path is chosen here.
void PortalShortcuts::request(const char* method, const QVariantList& arguments, QVariantMap options,
                              const Answered& answered)
{
    const QString token = QStringLiteral("brevlin%1").arg(++m_requestCount);
    const QString sender = m_bus->connection().baseService().mid(1).replace(u'.', u'_');
    const QString responsePath = path + QStringLiteral("/request/") + sender + u'/' + token;
    options.insert(QStringLiteral("handle_token"), token);
    m_requests.insert(responsePath, answered);
    QDBusMessage message = portalCall(interface, QString::fromLatin1(method));
    message.setArguments(arguments + QVariantList{options});
    m_bus->call(
        message, this,
        [this, responsePath](const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ErrorMessage) {
                if (const Answered refused = m_requests.take(responsePath)) {
                    refused(Response::failed, {});
                }
            }
        },
        forEver);
}

void PortalShortcuts::responded(const QDBusMessage& message)
{
    const Answered answered = m_requests.take(message.path());
    if (!answered) {
        return;
    }
    const auto response = busArguments<uint, QVariantMap>(message);
    const uint code = response ? std::get<0>(*response) : 2;
    answered(code == 0   ? Response::done
             : code == 1 ? Response::cancelled
                         : Response::failed,
             response ? std::get<1>(*response) : QVariantMap());
}

BusShortcuts PortalShortcuts::shortcuts() const
{
    BusShortcuts shortcuts;
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        const QString id = QString::fromStdString(std::string(rawValue(action)));
        shortcuts.append({id, {{QStringLiteral("description"), QString::fromStdString(m_titles[action])}}});
    }
    return shortcuts;
}

// Plasma 5 learns of the keys here alone; its dialog changes those that it has. Others overlook the option.
void PortalShortcuts::openSession()
{
    m_isBusy = true;
    request("CreateSession", {},
            {{QStringLiteral("session_handle_token"), sessionToken},
             {QStringLiteral("shortcuts"), QVariant::fromValue(shortcuts())}},
            [this](Response response, const QVariantMap& results) {
                m_isBusy = false;
                // A string where the other calls want a path.
                m_session =
                    busValue<QString>(results.value(QStringLiteral("session_handle"))).value_or(QString());
                if (response == Response::done && !m_session.isEmpty()) {
                    list();
                } else {
                    m_session.clear();
                    endDialog(Response::failed);
                }
            });
}

void PortalShortcuts::list()
{
    m_isBusy = true;
    request("ListShortcuts", {QVariant::fromValue(QDBusObjectPath(m_session))}, {},
            [this](Response /*response*/, const QVariantMap& results) {
                m_isBusy = false;
                take(results);
                proceed();
            });
}

void PortalShortcuts::bind()
{
    m_isBusy = true;
    request("BindShortcuts",
            {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(shortcuts()), m_window}, {},
            [this](Response response, const QVariantMap& results) {
                m_isBusy = false;
                m_hasBound = true;
                take(results);
                endDialog(response);
            });
}

void PortalShortcuts::configure()
{
    QDBusMessage message = portalCall(interface, QStringLiteral("ConfigureShortcuts"));
    message << QVariant::fromValue(QDBusObjectPath(m_session)) << m_window << QVariantMap();
    m_isBusy = true;
    m_bus->call(message, this, [this](const QDBusMessage& answer) {
        m_isBusy = false;
        endDialog(answer.type() == QDBusMessage::ErrorMessage ? Response::failed : Response::cancelled);
    });
}

void PortalShortcuts::endDialog(Response response)
{
    if (!std::exchange(m_isDialogOpen, false)) {
        return;
    }
    m_hasDialogFailed = response == Response::failed;
    if (response == Response::done) {
        m_observer.bound();
        if (!m_hasListed) {
            list(); // some tell what was chosen only then
        }
    } else if (!m_isWanted) {
        closeSession({});
    }
    m_observer.changed();
}

// Answered before another one takes its name.
void PortalShortcuts::closeSession(const std::function<void()>& closed)
{
    if (m_session.isEmpty()) {
        return;
    }
    const QDBusMessage message =
        QDBusMessage::createMethodCall(service, m_session, sessionInterface, QStringLiteral("Close"));
    forgetSession();
    m_isBusy = true;
    m_bus->call(message, this, [this, closed](const QDBusMessage& /*answer*/) {
        m_isBusy = false;
        if (closed) {
            closed();
        }
    });
}

void PortalShortcuts::resume(const GlobalShortcuts::Titles& titles)
{
    m_titles = titles;
    if (!std::exchange(m_isWanted, true)) {
        look();
    }
}

void PortalShortcuts::forget()
{
    m_isWanted = false;
    closeSession({});
}

void PortalShortcuts::openDialog(std::uint64_t window, const GlobalShortcuts::Titles& titles)
{
    if (m_isDialogOpen || !isOffered()) {
        return;
    }
    m_titles = titles;
    m_window = QStringLiteral("x11:%1").arg(window, 0, 16);
    m_isDialogOpen = true;
    m_hasDialogFailed = false;
    m_observer.changed();
    look();
}

void PortalShortcuts::take(const QVariantMap& results)
{
    if (const auto listed = busValue<BusShortcuts>(results.value(QStringLiteral("shortcuts")))) {
        take(*listed);
    }
}

void PortalShortcuts::take(const BusShortcuts& listed)
{
    m_triggers = {};
    m_hasListed = !listed.isEmpty();
    for (const BusShortcut& shortcut : listed) {
        if (const auto action = fromRawValue<ShortcutAction>(shortcut.id.toStdString())) {
            const QVariant words = shortcut.values.value(QStringLiteral("trigger_description"));
            m_triggers[*action] = busValue<QString>(words).value_or(QString()).toStdString();
        }
    }
    m_observer.changed();
}

void PortalShortcuts::activated(const QDBusMessage& message)
{
    const auto press = busArguments<QDBusObjectPath, QString, qulonglong, QVariantMap>(message);
    if (!press || m_session.isEmpty() || std::get<0>(*press).path() != m_session) {
        return;
    }
    if (const auto action = fromRawValue<ShortcutAction>(std::get<1>(*press).toStdString())) {
        const QVariant token = std::get<3>(*press).value(QStringLiteral("activation_token"));
        m_observer.activated(*action, busValue<QString>(token).value_or(QString()).toStdString());
    }
}

void PortalShortcuts::shortcutsChanged(const QDBusMessage& message)
{
    const auto change = busArguments<QDBusObjectPath, BusShortcuts>(message);
    if (change && !m_session.isEmpty() && std::get<0>(*change).path() == m_session) {
        take(std::get<1>(*change));
    }
}

void PortalShortcuts::sessionClosed(const QDBusMessage& message)
{
    if (message.path() == m_session) {
        forgetSession();
        m_observer.changed();
    }
}

} // namespace brevlin
