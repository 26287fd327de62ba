#pragma once

#include "platform/freedesktop/x11/x11_connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QProcess>

#include <memory>

namespace brevlin {

/// Whether the GTK theme is a dark one, for desktops that choose between light and dark by choosing that
/// theme. Asked where GTK's own programs ask: the environment, the desktop's X settings and, where nobody
/// serves those, GTK's file of settings or, on Wayland, GNOME's settings.
class GtkTheme final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit GtkTheme(QObject* parent = nullptr);
    ~GtkTheme() override;

    /// Begins to look, once. False while the answer is still to come, which `changed` then tells of.
    bool look();
    bool isDark() const { return m_isDark; }

Q_SIGNALS:
    void changed();

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool readXSettings();
    void readFile();
    void askGnomeSettings();
    void setDark(bool isDark);

    X11Connection m_x11;
    bool m_hasLooked = false;
    bool m_isDark = false;
    xcb_window_t m_settingsWindow = XCB_WINDOW_NONE; // of the desktop's settings daemon
    xcb_atom_t m_settingsProperty = XCB_ATOM_NONE;
    xcb_atom_t m_settingsSelection = XCB_ATOM_NONE;
    std::unique_ptr<QProcess> m_gnomeSettings;
};

/// By its name, as themes follow no other rule. A "darker" theme is a light one with dark title bars.
bool isDarkGtkTheme(const QString& name);

} // namespace brevlin
