#include "platform/freedesktop/tray/status_bus_menu.h"

#include "platform/freedesktop/tray/status_bus_types.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

const QString interface = QStringLiteral("com.canonical.dbusmenu");

const QString description = QStringLiteral(R"xml(
<interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout">
    <arg name="parentId" type="i" direction="in"/>
    <arg name="recursionDepth" type="i" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="revision" type="u" direction="out"/>
    <arg name="layout" type="(ia{sv}av)" direction="out"/>
  </method>
  <method name="GetGroupProperties">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="properties" type="a(ia{sv})" direction="out"/>
  </method>
  <method name="GetProperty">
    <arg name="id" type="i" direction="in"/>
    <arg name="name" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <method name="Event">
    <arg name="id" type="i" direction="in"/>
    <arg name="eventId" type="s" direction="in"/>
    <arg name="data" type="v" direction="in"/>
    <arg name="timestamp" type="u" direction="in"/>
  </method>
  <method name="EventGroup">
    <arg name="events" type="a(isvu)" direction="in"/>
    <arg name="idErrors" type="ai" direction="out"/>
  </method>
  <method name="AboutToShow">
    <arg name="id" type="i" direction="in"/>
    <arg name="needUpdate" type="b" direction="out"/>
  </method>
  <method name="AboutToShowGroup">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="updatesNeeded" type="ai" direction="out"/>
    <arg name="idErrors" type="ai" direction="out"/>
  </method>
  <signal name="ItemsPropertiesUpdated">
    <arg name="updatedProps" type="a(ia{sv})"/>
    <arg name="removedProps" type="a(ias)"/>
  </signal>
  <signal name="LayoutUpdated"><arg name="revision" type="u"/><arg name="parent" type="i"/></signal>
</interface>
)xml");

constexpr int menuID = 0;

// Some hosts do not tell when the menu closes: then nobody sees it any more after so many updates.
constexpr int longestFollowing = 60;

int idOf(std::size_t index)
{
    return static_cast<int>(index) + 1;
}

bool haveSameShape(const std::vector<StatusMenuRow>& first, const std::vector<StatusMenuRow>& second)
{
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const StatusMenuRow& one, const StatusMenuRow& other) {
                          return one.identifier == other.identifier &&
                                 one.isSeparator() == other.isSeparator();
                      });
}

} // namespace

StatusBusMenu::StatusBusMenu(MessageBus& bus, const QString& path)
    : BusInterface(interface, description), m_object(bus, path)
{
    m_object.add(*this);
    registerStatusBusTypes();
}

void StatusBusMenu::setRows(const std::vector<StatusMenuRow>& rows)
{
    if (m_rows == rows) {
        return;
    }
    const auto old = std::exchange(m_rows, rows);
    if (haveSameShape(old, m_rows)) {
        announce(old);
    } else {
        ++m_revision;
        emitSignal("LayoutUpdated", {m_revision, menuID});
    }
}

void StatusBusMenu::announce(const std::vector<StatusMenuRow>& old)
{
    QList<int> changed;
    bool isWorthASignal = m_followedUpdates > 0;
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
        if (m_rows[index] != old[index]) {
            changed.append(idOf(index));
            isWorthASignal = isWorthASignal || !m_rows[index].changesEverySecond;
        }
    }
    if (isWorthASignal) {
        m_followedUpdates = std::max(m_followedUpdates - 1, 0);
        announceRows(changed);
    } else {
        m_isOutdated = true;
    }
}

void StatusBusMenu::announceRows(const QList<int>& ids)
{
    QList<BusMenuProperties> properties;
    for (const int id : ids) {
        properties.append({id, rowProperties(id)});
    }
    emitSignal("ItemsPropertiesUpdated",
               {QVariant::fromValue(properties), QVariant::fromValue(QList<BusMenuPropertyNames>{})});
}

QVariantMap StatusBusMenu::properties() const
{
    return {{QStringLiteral("Version"), 3U},
            {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
            {QStringLiteral("Status"), QStringLiteral("normal")},
            {QStringLiteral("IconThemePath"), QStringList{}}};
}

const StatusMenuRow* StatusBusMenu::row(int id) const
{
    const auto index = static_cast<std::size_t>(id) - 1;
    return id > menuID && index < m_rows.size() ? &m_rows[index] : nullptr;
}

QVariantMap StatusBusMenu::rowProperties(int id) const
{
    if (id == menuID) {
        return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    }
    const StatusMenuRow* found = row(id);
    if (found == nullptr) {
        return {};
    }
    if (found->isSeparator()) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    // An underscore would mark the next letter as the row's key.
    QString label = QString::fromStdString(found->text);
    label.replace(u'_', QStringLiteral("__"));
    return {{QStringLiteral("label"), label}, {QStringLiteral("enabled"), found->isEnabled}};
}

QVariantList StatusBusMenu::layout(int parent, int depth) const
{
    BusMenuNode node{parent, rowProperties(parent), {}};
    for (std::size_t index = 0; parent == menuID && depth != 0 && index < m_rows.size(); ++index) {
        const BusMenuNode child{idOf(index), rowProperties(idOf(index)), {}};
        node.children.append(QVariant::fromValue(child));
    }
    return {m_revision, QVariant::fromValue(node)};
}

QVariantList StatusBusMenu::groupProperties(QList<int> ids) const
{
    if (ids.isEmpty()) { // which asks for all
        for (int id = menuID; id <= static_cast<int>(m_rows.size()); ++id) {
            ids.append(id);
        }
    }
    QList<BusMenuProperties> result;
    for (const int id : ids) {
        result.append({id, rowProperties(id)});
    }
    return {QVariant::fromValue(result)};
}

void StatusBusMenu::prepareToShow()
{
    m_followedUpdates = longestFollowing;
    if (std::exchange(m_isOutdated, false)) {
        QList<int> ids;
        for (std::size_t index = 0; index < m_rows.size(); ++index) {
            if (m_rows[index].changesEverySecond) {
                ids.append(idOf(index));
            }
        }
        announceRows(ids);
    }
}

bool StatusBusMenu::takeEvent(int id, const QString& type)
{
    if (id == menuID) {
        if (type == QLatin1String("opened")) {
            prepareToShow();
        } else if (type == QLatin1String("closed")) {
            m_followedUpdates = 0;
        }
        return true;
    }
    const StatusMenuRow* chosen = row(id);
    if (chosen == nullptr) {
        return false;
    }
    if (type == QLatin1String("clicked") && chosen->isEnabled && !chosen->isSeparator()) {
        // After the answer: what follows may end the program.
        QMetaObject::invokeMethod(
            this,
            [this, identifier = QString::fromStdString(chosen->identifier)] { Q_EMIT rowChosen(identifier); },
            Qt::QueuedConnection);
    }
    return true;
}

BusAnswer StatusBusMenu::answer(const QString& method, const QVariantList& arguments)
{
    const auto number = [&arguments](qsizetype index) {
        return arguments.at(index).toInt();
    };
    if (method == QLatin1String("GetLayout")) {
        return layout(number(0), number(1));
    }
    if (method == QLatin1String("GetGroupProperties")) {
        return groupProperties(qdbus_cast<QList<int>>(arguments.at(0)));
    }
    if (method == QLatin1String("GetProperty")) {
        const QVariant value = rowProperties(number(0)).value(arguments.at(1).toString());
        return QVariantList{
            QVariant::fromValue(QDBusVariant(value.isValid() ? value : QString(QLatin1String(""))))};
    }
    if (method == QLatin1String("Event")) {
        takeEvent(number(0), arguments.at(1).toString());
        return {};
    }
    if (method == QLatin1String("EventGroup")) {
        QList<int> unknown;
        const auto events = qdbus_cast<QList<BusMenuEvent>>(arguments.at(0));
        for (const BusMenuEvent& event : events) {
            if (!takeEvent(event.id, event.type)) {
                unknown.append(event.id);
            }
        }
        return QVariantList{QVariant::fromValue(unknown)};
    }
    // The changed rows are on their way: nobody needs to read the whole menu anew.
    if (method == QLatin1String("AboutToShow")) {
        prepareToShow();
        return QVariantList{false};
    }
    prepareToShow(); // AboutToShowGroup
    const QVariant none = QVariant::fromValue(QList<int>{});
    return QVariantList{none, none};
}

} // namespace brevlin
