#include "platform/freedesktop/appearance/portal_desktop_settings.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <utility>

namespace brevlin {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const QString kdeGroup = QStringLiteral("org.kde.kdeglobals.KDE");

// a{sa{sv}}, which Qt would read into a map that keeps the last of equal keys.
QList<std::pair<QString, QVariantMap>> groupsOf(const QDBusMessage& reply)
{
    QList<std::pair<QString, QVariantMap>> groups;
    const auto argument = busArgument(reply, QLatin1String("a{sa{sv}}"));
    if (!argument) {
        return groups;
    }
    argument->beginMap();
    while (!argument->atEnd()) {
        QString group;
        QVariantMap values;
        argument->beginMapEntry();
        *argument >> group >> values;
        argument->endMapEntry();
        groups.append({group, values});
    }
    argument->endMap();
    return groups;
}

} // namespace

QMap<QString, QVariantMap> firstAnswers(const QList<std::pair<QString, QVariantMap>>& answers)
{
    QMap<QString, QVariantMap> result;
    for (const auto& [group, values] : answers) {
        for (auto entry = values.begin(); entry != values.end(); ++entry) {
            const QVariant value = unwrapped(entry.value());
            const bool saysSomething = group != appearanceGroup || busValue<uint>(value).value_or(0) != 0;
            if (saysSomething && !result[group].contains(entry.key())) {
                result[group].insert(entry.key(), value);
            }
        }
    }
    return result;
}

PortalDesktopSettings::PortalDesktopSettings(MessageBus& bus, QObject* parent) : QObject(parent), m_bus(bus)
{
    if (bus.isOpen()) {
        follow(); // though it may be held back, so that the answer may come before the first picture
    } else {
        readAll(); // fails at once, which leaves the GTK theme
        bus.whenOpen(this, [this] { follow(); });
    }
}

// From any sender, for Qt would wait for the bus to tell who the portal is: it is the portal that is asked
// then.
void PortalDesktopSettings::follow()
{
    m_bus.connection().connect({}, path, interface, QStringLiteral("SettingChanged"), this,
                               SLOT(settingChanged(QDBusMessage)));
    readAnew();
}

void PortalDesktopSettings::readAll()
{
    m_isReading = true;
    m_isOutdated = false;
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    message << QStringList{appearanceGroup, gnomeGroup, kdeGroup};
    m_bus.call(message, this, [this](const QDBusMessage& answer) {
        m_isReading = false;
        if (m_isOutdated) {
            readAll();
            return;
        }
        if (answer.type() != QDBusMessage::ErrorMessage) {
            m_values = firstAnswers(groupsOf(answer));
        }
        if (!saysColorScheme()) {
            const bool isKnown = m_gtkTheme.look();
            connect(&m_gtkTheme, &GtkTheme::changed, this, &PortalDesktopSettings::tell,
                    Qt::UniqueConnection);
            if (!isKnown) {
                return;
            }
        }
        tell();
    });
}

// The signal does not say which of several back ends it comes from, and so whether its value holds.
void PortalDesktopSettings::settingChanged(const QDBusMessage& message)
{
    const auto change = busArguments<QString, QString, QDBusVariant>(message);
    const QString group = change ? std::get<0>(*change) : QString();
    if (group != appearanceGroup && group != gnomeGroup && group != kdeGroup) {
        return;
    }
    readAnew();
}

void PortalDesktopSettings::readAnew()
{
    m_isOutdated = true;
    if (!m_isReading) {
        readAll();
    }
}

void PortalDesktopSettings::tell()
{
    if (m_changeHandler) {
        m_changeHandler();
    }
}

QVariant PortalDesktopSettings::value(const QString& group, const QString& key) const
{
    return m_values.value(group).value(key);
}

bool PortalDesktopSettings::saysColorScheme() const
{
    return value(appearanceGroup, QStringLiteral("color-scheme")).isValid();
}

std::optional<DesktopSettings::ColorScheme> PortalDesktopSettings::colorScheme() const
{
    switch (busValue<uint>(value(appearanceGroup, QStringLiteral("color-scheme"))).value_or(0)) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        return m_gtkTheme.isDark() ? std::optional{ColorScheme::dark} : std::nullopt;
    }
}

bool PortalDesktopSettings::reducesMotion() const
{
    if (const auto reduced = busValue<uint>(value(appearanceGroup, QStringLiteral("reduced-motion")))) {
        return *reduced == 1;
    }
    if (const auto enabled = busValue<bool>(value(gnomeGroup, QStringLiteral("enable-animations")))) {
        return !*enabled;
    }
    const QVariant factor = value(kdeGroup, QStringLiteral("AnimationDurationFactor"));
    const auto number = busValue<double>(factor);
    const auto text = busValue<QString>(factor); // as it stands in Plasma's file
    bool isNumber = number.has_value();
    return (text ? text->toDouble(&isNumber) : number.value_or(0.0)) == 0.0 && isNumber;
}

void PortalDesktopSettings::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

} // namespace brevlin
