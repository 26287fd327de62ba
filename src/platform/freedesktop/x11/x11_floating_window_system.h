#pragma once

#include "platform/floating_window_system.h"
#include "platform/freedesktop/sway/sway_work_area.h"
#include "platform/freedesktop/x11/x11_connection.h"
#include "platform/freedesktop/x11/xwayland_pointer.h"
#include "platform/task_scheduler.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace brevlin {

/// A floating window on X11, by an override-redirect window that no window manager governs: what a manager
/// would do for it is done here. It follows the Extended Window Manager Hints
/// (https://specifications.freedesktop.org/wm-spec/), with the blur of Plasma's compositor
/// (_KDE_NET_WM_BLUR_BEHIND_REGION). Away from X11 it offers nothing.
class X11FloatingWindowSystem final : public QObject,
                                      public FloatingWindowSystem,
                                      private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11FloatingWindowSystem(TaskScheduler& scheduler, QObject* parent = nullptr);
    ~X11FloatingWindowSystem() override;

    void prepareToShow(WindowId window) override;
    void keepAbove(WindowId window) override;
    void prepareResize(WindowId window, const Rectangle& from, const Rectangle& to) override;
    void setShape(WindowId window, const Shape& shape) override;
    bool isScreenCovered() override;
    PointerSight pointerSight() const override { return m_pointerSight; }
    bool isLeavingTold() const override { return m_pointer.isLeavingTold(); }
    bool isComposited() const override;
    bool blurs() const override;
    void setBlurredPart(WindowId window, const std::vector<Rectangle>& part) override;
    std::vector<ReservedArea> reservedAreas() const override;
    void setChangeHandler(std::function<void()> handler) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void refuseFocus(xcb_window_t window);
    void scheduleRaise();
    void raise() const;

    TaskScheduler& m_scheduler;
    X11Connection m_x11;
    SwayWorkArea m_swayWorkArea;
    PointerSight m_pointerSight = PointerSight::everywhere;
    XwaylandPointer m_pointer;
    std::uint8_t m_inputExtension = 0;            // XInput's number, asked for where the sight is uncertain
    std::vector<xcb_atom_t> m_watchedProperties;  // of the root window, that the change handler is told of
    std::vector<xcb_atom_t> m_stackingProperties; // of the root window, that change with the order of windows
    xcb_window_t m_floating = XCB_WINDOW_NONE;    // to be kept above
    xcb_window_t m_cover = XCB_WINDOW_NONE;       // hides a screen; its end is waited for
    TaskHandle m_raiseTask;
    bool m_hasOrderChangedSince = false; // the raising task was scheduled
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
