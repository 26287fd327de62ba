#pragma once

#include "platform/floating_panel_system.h"
#include "platform/freedesktop/x11_connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace brevlin {

/// Floating panels on X11 by the Extended Window Manager Hints
/// (https://specifications.freedesktop.org/wm-spec/), with the blur of Plasma's compositor
/// (_KDE_NET_WM_BLUR_BEHIND_REGION). Away from X11 it offers nothing.
class X11PanelSystem final : public QObject, public FloatingPanelSystem, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11PanelSystem(QObject* parent = nullptr);
    ~X11PanelSystem() override;

    void prepareToShow(WindowId window) override;
    void keepAbove(WindowId window) override;
    bool isComposited() const override;
    bool blurs() const override;
    void setBlurredPart(WindowId window, const std::vector<Rectangle>& part) override;
    std::vector<ReservedArea> reservedAreas() const override;
    void setChangeHandler(std::function<void()> handler) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void refuseFocus(xcb_window_t window);

    X11Connection m_x11;
    std::vector<xcb_atom_t> m_watchedProperties; // of the root window
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
