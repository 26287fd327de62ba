#include "platform/freedesktop/tray/status_notifier_item.h"

#include "platform/freedesktop/tray/status_bus_types.h"

#include <QDBusObjectPath>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

const QString interface = QStringLiteral("org.kde.StatusNotifierItem");

const QString description = QStringLiteral(R"xml(
<interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <property name="XAyatanaLabel" type="s" access="read"/>
  <property name="XAyatanaLabelGuide" type="s" access="read"/>
  <property name="XAyatanaOrderingIndex" type="u" access="read"/>
  <method name="ContextMenu"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="Activate"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="SecondaryActivate">
    <arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/>
  </method>
  <method name="Scroll">
    <arg name="delta" type="i" direction="in"/><arg name="orientation" type="s" direction="in"/>
  </method>
  <signal name="NewTitle"/>
  <signal name="NewIcon"/>
  <signal name="NewToolTip"/>
  <signal name="NewStatus"><arg name="status" type="s"/></signal>
  <signal name="XAyatanaNewLabel"><arg name="label" type="s"/><arg name="guide" type="s"/></signal>
</interface>
)xml");

QString qt(const std::string& text)
{
    return QString::fromStdString(text);
}

// Hosts that show labels take the icon theme's picture before ours, and Ayatana's take no other: they are
// given the name once the theme has the picture.
QString installedName(const std::string& themeName)
{
    const QString file = QStringLiteral("icons/hicolor/symbolic/apps/%1.svg").arg(qt(themeName));
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty() ? QString()
                                                                                       : qt(themeName);
}

} // namespace

const QString StatusNotifierItem::path = QStringLiteral("/StatusNotifierItem");
const QString StatusNotifierItem::menuPath = QStringLiteral("/StatusNotifierItem/Menu");

StatusNotifierItem::StatusNotifierItem(MessageBus& bus)
    : BusInterface(interface, description), m_object(bus, path)
{
    m_object.add(*this);
    registerStatusBusTypes();
}

void StatusNotifierItem::setPictures(const StatusPictures& pictures)
{
    if (std::exchange(m_pictures, pictures) != pictures) {
        tell("NewIcon");
        if (std::exchange(m_toldTitle, m_texts.title) != m_texts.title) {
            tell("NewTitle");
        }
    }
}

void StatusNotifierItem::setTexts(const StatusTexts& texts)
{
    const StatusTexts old = std::exchange(m_texts, texts);
    if (old == texts) {
        return;
    }
    if (!m_showsLabel) {
        tell("NewToolTip");
    }
    tellLabel();
}

void StatusNotifierItem::setShowsLabel(bool showsLabel)
{
    if (std::exchange(m_showsLabel, showsLabel) != showsLabel) {
        tell("NewIcon");
        tellLabel();
    }
}

// Two signals a second that nobody hears would wake this program's thread for the bus, and the bus.
void StatusNotifierItem::tell(const char* signal, const QVariantList& arguments) const
{
    if (m_isCollected) {
        emitSignal(signal, arguments);
    }
}

void StatusNotifierItem::tellLabel() const
{
    tell("XAyatanaNewLabel", {label(), labelGuide()});
}

QString StatusNotifierItem::label() const
{
    return qt(m_texts.clock);
}

// The widest that the label gets, so that its neighbours stand still.
QString StatusNotifierItem::labelGuide() const
{
    QString guide = label();
    std::ranges::replace_if(
        guide, [](QChar character) { return character.isDigit(); }, QLatin1Char('0'));
    return guide;
}

QVariantMap StatusNotifierItem::properties() const
{
    const BusToolTip toolTip{{}, {}, qt(m_texts.toolTipTitle), qt(m_texts.toolTipDetail).toHtmlEscaped()};
    return {
        {QStringLiteral("Category"), QStringLiteral("ApplicationStatus")},
        {QStringLiteral("Id"), QStringLiteral("brevlin")},
        {QStringLiteral("Title"), qt(m_texts.title)},
        {QStringLiteral("Status"), QStringLiteral("Active")},
        {QStringLiteral("WindowId"), 0},
        {QStringLiteral("IconThemePath"), QString(QLatin1String(""))},
        {QStringLiteral("IconName"),
         m_showsLabel ? installedName(m_pictures.themeName) : QString(QLatin1String(""))},
        {QStringLiteral("IconPixmap"),
         QVariant::fromValue(busPixmaps(m_showsLabel ? m_pictures.plain : m_pictures.withClock))},
        {QStringLiteral("OverlayIconName"), QString(QLatin1String(""))},
        {QStringLiteral("AttentionIconName"), QString(QLatin1String(""))},
        {QStringLiteral("ToolTip"), QVariant::fromValue(toolTip)},
        {QStringLiteral("ItemIsMenu"), false},
        {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(menuPath))},
        {QStringLiteral("XAyatanaLabel"), label()},
        {QStringLiteral("XAyatanaLabelGuide"), labelGuide()},
        {QStringLiteral("XAyatanaOrderingIndex"), 0U},
    };
}

void StatusNotifierItem::propertyAsked(const QString& name)
{
    if (name == QLatin1String("XAyatanaLabel")) {
        Q_EMIT labelAsked();
    }
}

BusAnswer StatusNotifierItem::answer(const QString& method, const QVariantList& arguments)
{
    if (method != QLatin1String("Scroll")) {
        const int x = arguments.at(0).toInt();
        const int y = arguments.at(1).toInt();
        if (method == QLatin1String("ContextMenu")) {
            Q_EMIT menuRequested(x, y);
        } else { // Activate, SecondaryActivate
            Q_EMIT activated(x, y);
        }
    }
    return {};
}

} // namespace brevlin
