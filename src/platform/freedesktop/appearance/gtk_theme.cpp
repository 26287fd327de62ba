#include "platform/freedesktop/appearance/gtk_theme.h"

#include "platform/freedesktop/appearance/x_settings.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace brevlin {

namespace {

constexpr std::array darkWords{"dark", "black", "inverse"};

bool isChosenDark(const XSettings& settings)
{
    const auto theme = settings.texts.find("Net/ThemeName");
    const auto prefersDark = settings.numbers.find("Gtk/ApplicationPreferDarkTheme");
    return (theme != settings.texts.end() && isDarkGtkTheme(QString::fromStdString(theme->second))) ||
           (prefersDark != settings.numbers.end() && prefersDark->second == 1);
}

} // namespace

bool isDarkGtkTheme(const QString& name)
{
    const QString lower = name.toLower();
    return !lower.contains(QLatin1String("darker")) &&
           std::any_of(darkWords.begin(), darkWords.end(),
                       [&lower](const char* word) { return lower.contains(QLatin1String(word)); });
}

GtkTheme::GtkTheme(QObject* parent) : QObject(parent) {}

GtkTheme::~GtkTheme()
{
    if (m_settingsSelection != XCB_ATOM_NONE) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

bool GtkTheme::look()
{
    if (!std::exchange(m_hasLooked, true)) {
        if (const QString theme = qEnvironmentVariable("GTK_THEME"); !theme.isEmpty()) {
            m_isDark = isDarkGtkTheme(theme);
        } else if (!readXSettings()) {
            readFile();
            if (!m_isDark && qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
                askGnomeSettings();
            }
        }
    }
    return m_gnomeSettings == nullptr;
}

bool GtkTheme::readXSettings()
{
    if (!m_x11.isConnected()) {
        return false;
    }
    if (m_settingsSelection == XCB_ATOM_NONE) {
        m_settingsSelection = m_x11.atom("_XSETTINGS_S0");
        m_settingsProperty = m_x11.atom("_XSETTINGS_SETTINGS");
        qGuiApp->installNativeEventFilter(this);
    }
    xcb_connection_t* x11 = m_x11.get();
    const auto ownerCookie = xcb_get_selection_owner(x11, m_settingsSelection);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner{
        xcb_get_selection_owner_reply(x11, ownerCookie, nullptr), &std::free};
    m_settingsWindow = owner ? owner->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    if (m_settingsWindow == XCB_WINDOW_NONE) {
        return false;
    }
    // What Qt asks of this window, too: a client has one such request for each window.
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(x11, m_settingsWindow, XCB_CW_EVENT_MASK, &events);
    constexpr std::uint32_t longest = 65'536; // units of four bytes
    const auto cookie =
        xcb_get_property(x11, 0, m_settingsWindow, m_settingsProperty, XCB_ATOM_ANY, 0, longest);
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply{
        xcb_get_property_reply(x11, cookie, nullptr), &std::free};
    if (!reply || reply->type == XCB_ATOM_NONE) {
        return false;
    }
    setDark(isChosenDark(
        brevlin::readXSettings({static_cast<const char*>(xcb_get_property_value(reply.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))})));
    return true;
}

bool GtkTheme::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    constexpr std::uint8_t sentBit = 0x80;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    const auto type = static_cast<std::uint8_t>(event.response_type & ~sentBit);
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notify.window == m_settingsWindow && notify.atom == m_settingsProperty) {
            readXSettings();
        }
    } else if (type == XCB_CLIENT_MESSAGE) {
        // A settings daemon that starts later announces itself so.
        const auto& notify = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (notify.window == m_x11.root() && notify.data.data32[1] == m_settingsSelection) {
            readXSettings();
        }
    }
    return false;
}

void GtkTheme::readFile()
{
    QString path =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("gtk-3.0/settings.ini"));
    if (path.isEmpty()) {
        path = QStringLiteral("/etc/gtk-3.0/settings.ini");
    }
    const QSettings file(path, QSettings::IniFormat);
    m_isDark = file.value(QStringLiteral("Settings/gtk-application-prefer-dark-theme")).toBool() ||
               isDarkGtkTheme(file.value(QStringLiteral("Settings/gtk-theme-name")).toString());
}

void GtkTheme::askGnomeSettings()
{
    m_gnomeSettings = std::make_unique<QProcess>();
    const auto finish = [this] {
        if (m_gnomeSettings == nullptr) {
            return;
        }
        static const QRegularExpression theme(QStringLiteral("gtk-theme '([^']*)'"));
        const QString answer = QString::fromUtf8(m_gnomeSettings->readAllStandardOutput());
        m_gnomeSettings.release()->deleteLater();
        m_isDark = answer.contains(QLatin1String("color-scheme 'prefer-dark'")) ||
                   isDarkGtkTheme(theme.match(answer).captured(1));
        Q_EMIT changed();
    };
    connect(m_gnomeSettings.get(), &QProcess::finished, this, finish);
    connect(m_gnomeSettings.get(), &QProcess::errorOccurred, this, finish);
    m_gnomeSettings->setStandardErrorFile(QProcess::nullDevice());
    m_gnomeSettings->start(QStringLiteral("gsettings"), {QStringLiteral("list-recursively"),
                                                         QStringLiteral("org.gnome.desktop.interface")});
}

void GtkTheme::setDark(bool isDark)
{
    if (std::exchange(m_isDark, isDark) != isDark) {
        Q_EMIT changed();
    }
}

} // namespace brevlin
