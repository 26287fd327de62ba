#pragma once

#include "app/capsule.h"
#include "platform/task_scheduler.h"
#include "ui/capsule/capsule_placement.h"

#include <QObject>
#include <QRect>

#include <memory>
#include <optional>

namespace brevlin {

class FloatingWindowSystem;
class CapsuleWindow;
class SessionLock;

/// The capsule: shows the content in its window, pins the window to its place through every layout,
/// lets the user drag it and follows the screens. While the session is locked it is not visible; what was to
/// be seen meanwhile appears after the unlocking.
class TopPanelController final : public QObject, public Capsule, public CapsuleMover
{
    Q_OBJECT

public:
    TopPanelController(FloatingWindowSystem& system, SessionLock& lock, TaskScheduler& scheduler,
                       CapsulePositionStore& store);
    ~TopPanelController() override;

    void setObserver(Observer observer) override;
    bool isVisible() const override;
    void show(const CapsuleContent& content, const CapsuleLayout& layout) override;
    void update(const CapsuleContent& content, const CapsuleLayout& layout) override;
    void hide() override;
    HorizontalAnchor preferredExpansionAnchor(double width) const override;
    bool hasPointerWithin(double distance) const override;
    std::optional<CapsulePlace> place() override;
    void moveTo(const CapsulePlace& place) override;

    /// Where the desktop shows its banners; the island keeps clear of them.
    void setBannerPlace(const std::optional<BannerPlace>& place);
    /// Whether an island that appears now covers the desktop's banners, or they it.
    bool meetsBanners(const BannerPlace& place);
    /// The session has been locked, or unlocked.
    void followLock();

private:
    void makeWindow();
    void appear();
    void watchScreens();
    void scheduleReposition();
    void reposition();
    void setHovered(bool isHovered);
    void watchExit();
    void drag(const QPoint& distance);
    void scheduleEndOfDrag();
    void endDrag();

    FloatingWindowSystem& m_system;
    SessionLock& m_lock;
    TaskScheduler& m_scheduler;
    CapsulePlacement m_placement;
    Observer m_observer;
    std::optional<CapsuleContent> m_content; // to be seen as soon as it may; none while hidden
    CapsuleLayout m_layout;
    std::unique_ptr<CapsuleWindow> m_window; // made when it is first shown
    TaskHandle m_repositionTask;
    TaskHandle m_exitTask;
    TaskHandle m_lostPointerTask;
    TaskHandle m_positionSaveTask;
};

} // namespace brevlin
