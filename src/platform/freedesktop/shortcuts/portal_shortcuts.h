#pragma once

#include "platform/freedesktop/bus/bus_inquiry.h"
#include "platform/freedesktop/bus/message_bus.h"
#include "platform/global_shortcuts.h"

#include <QDBusArgument>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace brevlin {

/// (sa{sv})
struct BusShortcut
{
    QString id;
    QVariantMap values;
};
using BusShortcuts = QList<BusShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const BusShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusShortcut& shortcut);

/// Keys by the portal
/// (https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.GlobalShortcuts.html). It
/// has a connection of its own to the bus: a program must have told the portal its name before it asks for
/// anything else, and the look of the desktop is asked for at the start. What was bound once is listed, and
/// the user is asked only where he wants to be. A portal that starts anew gets a session anew.
class PortalShortcuts final : public QObject
{
    Q_OBJECT

public:
    /// Asks nothing yet.
    PortalShortcuts(std::string busAddress, GlobalShortcuts::Observer observer);
    ~PortalShortcuts() override;

    void look();
    /// Whether the portal is known to have it.
    bool isOffered() const { return m_version > 0; }
    void resume(const GlobalShortcuts::Titles& titles);
    void forget();
    void openDialog(std::uint64_t window, const GlobalShortcuts::Titles& titles);
    bool isDialogOpen() const { return m_isDialogOpen; }
    bool hasDialogFailed() const { return m_hasDialogFailed; }
    const std::string& trigger(ShortcutAction action) const { return m_triggers[action]; }

private Q_SLOTS:
    void responded(const QDBusMessage& message);
    void activated(const QDBusMessage& message);
    void shortcutsChanged(const QDBusMessage& message);
    void sessionClosed(const QDBusMessage& message);

private:
    enum class Response { done, cancelled, failed };
    using Answered = std::function<void(Response response, const QVariantMap& results)>;

    void serve();
    void meet();
    void askVersion();
    void proceed();
    void portalVanished();
    void forgetSession();
    /// `arguments` without the options, which are the last.
    void request(const char* method, const QVariantList& arguments, QVariantMap options,
                 const Answered& answered);
    BusShortcuts shortcuts() const;
    void openSession();
    void closeSession(const std::function<void()>& closed);
    void list();
    void bind();
    void configure();
    void endDialog(Response response);
    void take(const QVariantMap& results);
    void take(const BusShortcuts& listed);

    const std::string m_address;
    GlobalShortcuts::Observer m_observer;
    std::unique_ptr<BusInquiry> m_inquiry; // these two are made when the portal is asked for the first time
    std::unique_ptr<MessageBus> m_bus;
    QHash<QString, Answered> m_requests; // by the path where the response comes
    int m_requestCount = 0;
    uint m_version = 0;
    bool m_isPresent = false;
    bool m_isBusy = false;    // with a request; one follows the other
    bool m_isWanted = false;  // a session, whenever there is a portal
    QString m_session;        // its path; empty for none
    bool m_hasBound = false;  // in this session, which takes it once
    bool m_hasListed = false; // the portal knows keys of ours
    bool m_isDialogOpen = false;
    bool m_hasDialogFailed = false;
    QString m_window;
    GlobalShortcuts::Titles m_titles;
    ForEachShortcut<std::string> m_triggers;
};

} // namespace brevlin

Q_DECLARE_METATYPE(brevlin::BusShortcut)
