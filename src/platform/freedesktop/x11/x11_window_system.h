#pragma once

#include "platform/freedesktop/x11/x11_connection.h"
#include "platform/freedesktop/x11/x11_pixels.h"
#include "platform/window_system.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <optional>
#include <string_view>

namespace brevlin {

/// Window management on X11 by the Extended Window Manager Hints
/// (https://specifications.freedesktop.org/wm-spec/) and the two GTK hints that most window managers share.
/// Away from X11 it offers nothing.
class X11WindowSystem final : public QObject, public WindowSystem, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11WindowSystem(QObject* parent = nullptr);
    ~X11WindowSystem() override;

    bool tellsPlaces() const override { return true; }
    bool supportsShadowMargins() const override;
    void setSupportChangeHandler(std::function<void()> handler) override;
    bool isComposited() const override;
    void setShadowMargins(WindowId window, const Extents& extents) override;
    std::unique_ptr<PressWatch> watchPresses(std::function<void()> pressed) override;
    bool putPixels(WindowId window, const Pixels& pixels) override;
    bool showWindowMenu(WindowId window, int x, int y) override;
    void activate(WindowId window, const std::string& token) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    X11Connection m_x11;
    X11Pixels m_pixels{m_x11};
    std::function<void()> m_supportChangeHandler;
};

/// The X server time in a startup notification identifier "…_TIME1234"
/// (https://specifications.freedesktop.org/startup-notification-spec/); nothing where it has none.
std::optional<std::uint32_t> startupIdentifierTime(std::string_view identifier);

} // namespace brevlin
