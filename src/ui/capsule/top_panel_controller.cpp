#include "ui/capsule/top_panel_controller.h"

#include "platform/floating_window_system.h"
#include "platform/session_lock.h"
#include "ui/capsule/capsule_screens.h"
#include "ui/capsule/capsule_window.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace brevlin {

namespace {

constexpr Seconds positionSaveDelay{0.14};
constexpr Seconds exitWatchInterval{0.1};
// Where nobody tells that the pointer has gone, one that has not moved for so long has.
constexpr Seconds lostPointerDelay{4.0};
// The desktop tells of a new arrangement in several steps.
constexpr Seconds screensSettleDelay{0.1};
// Window managers move windows about when a screen comes or goes, some of them after we did.
constexpr Seconds secondLookDelay{0.4};

QRect primaryGeometry()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary != nullptr ? primary->geometry() : QRect();
}

} // namespace

TopPanelController::TopPanelController(FloatingWindowSystem& system, SessionLock& lock,
                                       TaskScheduler& scheduler, CapsulePositionStore& store)
    : m_system(system), m_lock(lock), m_scheduler(scheduler), m_placement(store)
{
    m_system.setChangeHandler([this] {
        if (m_window) {
            m_window->followSystem();
            scheduleReposition();
            followLock();
        }
    });
}

TopPanelController::~TopPanelController()
{
    m_system.setChangeHandler({});
    if (m_placement.isDragging()) {
        endDrag();
    }
}

void TopPanelController::setObserver(Observer observer)
{
    m_observer = std::move(observer);
}

bool TopPanelController::isVisible() const
{
    return m_window && m_window->isVisible();
}

void TopPanelController::makeWindow()
{
    m_window = std::make_unique<CapsuleWindow>(m_system);
    connect(&m_window->view(), &TopCapsuleView::commanded, this, [this](CapsuleCommand command) {
        if (m_observer.commanded) {
            m_observer.commanded(command);
        }
    });
    connect(m_window.get(), &CapsuleWindow::hovered, this, &TopPanelController::setHovered);
    connect(m_window.get(), &CapsuleWindow::pointerMoved, this, [this] {
        m_lostPointerTask = m_scheduler.after(lostPointerDelay, [this] {
            if (!m_system.isLeavingTold()) {
                m_window->losePointer();
            }
        });
    });
    connect(m_window.get(), &CapsuleWindow::dragged, this, &TopPanelController::drag);
    connect(m_window.get(), &CapsuleWindow::released, this, &TopPanelController::scheduleEndOfDrag);
    watchScreens();
}

void TopPanelController::watchScreens()
{
    const auto watch = [this](QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, &TopPanelController::scheduleReposition);
        connect(screen, &QScreen::availableGeometryChanged, this, &TopPanelController::scheduleReposition);
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, &TopPanelController::scheduleReposition);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, watch](QScreen* screen) {
        watch(screen);
        scheduleReposition();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &TopPanelController::scheduleReposition);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &TopPanelController::scheduleReposition);
}

void TopPanelController::show(const CapsuleContent& content, const CapsuleLayout& layout)
{
    if (!m_window) {
        makeWindow();
    }
    m_content = content;
    m_layout = layout;
    appear();
}

void TopPanelController::appear()
{
    if (m_lock.isLocked() || m_system.isScreenCovered()) {
        return;
    }
    m_placement.setScreens(currentCapsuleScreens(m_system));
    const auto frame = m_placement.place(m_layout);
    if (!frame) {
        return; // no screen: shown when there is one again
    }
    m_window->view().setContent(*m_content);
    m_window->appear(toQt(*frame, primaryGeometry()), m_layout.cornerRadius);
}

// What covers a screen without a word on the bus is not looked for while the capsule is shown: the capsule
// stays below it by itself.
void TopPanelController::followLock()
{
    if (!m_content) {
        return;
    }
    if (!isVisible()) {
        appear();
    } else if (m_lock.isLocked()) {
        m_window->hide();
    }
}

void TopPanelController::update(const CapsuleContent& content, const CapsuleLayout& layout)
{
    m_content = content;
    m_window->stay();
    m_window->view().setContent(content);
    if (std::exchange(m_layout, layout) == layout) {
        return;
    }
    if (const auto frame = m_placement.place(layout)) {
        m_window->morphTo(toQt(*frame, primaryGeometry()), layout.cornerRadius);
        if (m_placement.isDragging()) {
            m_placement.beginDrag(*frame);
            m_window->restartDrag();
        }
    }
}

void TopPanelController::hide()
{
    m_content.reset();
    if (m_window) {
        m_window->disappear();
    }
}

HorizontalAnchor TopPanelController::preferredExpansionAnchor(double width) const
{
    return m_placement.preferredExpansionAnchor(width);
}

bool TopPanelController::hasPointerWithin(double distance) const
{
    if (!isVisible() || m_window->hasPointer()) {
        return isVisible();
    }
    return m_system.pointerSight() == FloatingWindowSystem::PointerSight::everywhere &&
           m_window->covers(QCursor::pos(), distance);
}

std::optional<CapsulePlace> TopPanelController::place()
{
    if (!isVisible()) { // else it follows them
        m_placement.setScreens(currentCapsuleScreens(m_system));
    }
    return m_placement.circlePlace();
}

void TopPanelController::moveTo(const CapsulePlace& place)
{
    if (m_placement.isDragging()) {
        return; // it is in somebody's hand
    }
    m_placement.setScreens(currentCapsuleScreens(m_system));
    const auto frame = m_placement.moveCircleTo(place);
    if (frame && isVisible()) {
        m_window->glideTo(toQt(*frame, primaryGeometry()));
    }
}

void TopPanelController::setBannerPlace(const std::optional<BannerPlace>& place)
{
    m_placement.setBannerPlace(place);
    scheduleReposition();
}

bool TopPanelController::meetsBanners(const BannerPlace& place)
{
    if (m_lock.isLocked() || m_system.isScreenCovered()) {
        return false;
    }
    m_placement.setScreens(currentCapsuleScreens(m_system));
    return m_placement.meetsIsland(place);
}

void TopPanelController::scheduleReposition()
{
    m_repositionTask = m_scheduler.after(screensSettleDelay, [this] {
        reposition();
        m_repositionTask = m_scheduler.after(secondLookDelay, [this] { reposition(); });
    });
}

void TopPanelController::reposition()
{
    m_placement.setScreens(currentCapsuleScreens(m_system));
    if (!isVisible() || m_placement.isDragging()) {
        return; // the end of the drag looks again
    }
    if (const auto frame = m_placement.place(m_layout)) {
        const QRect target = toQt(*frame, primaryGeometry());
        if (target != m_window->target() || (target != m_window->frame() && !m_window->isMoving()) ||
            m_window->isLost()) {
            m_window->putAt(target, m_layout.cornerRadius);
        }
    }
}

void TopPanelController::setHovered(bool isHovered)
{
    m_exitTask.reset();
    if (!m_observer.hovered) {
        return;
    }
    m_observer.hovered(isHovered);
    if (!isHovered) {
        watchExit();
    }
}

// A pointer that rests just outside the shape counts as inside it, and leaves unseen from there.
void TopPanelController::watchExit()
{
    constexpr double exitTolerance = 2.0;
    if (!hasPointerWithin(exitTolerance)) {
        return;
    }
    m_exitTask = m_scheduler.every(exitWatchInterval, exitWatchInterval, [this] {
        if (!hasPointerWithin(exitTolerance)) {
            setHovered(false);
        }
    });
}

void TopPanelController::drag(const QPoint& distance)
{
    const QRect primary = primaryGeometry();
    if (!m_placement.isDragging()) {
        m_placement.beginDrag(fromQt(m_window->target(), primary));
    }
    m_window->moveTo(toQt(m_placement.dragBy(distance.x(), -distance.y()), primary));
    scheduleEndOfDrag();
}

void TopPanelController::scheduleEndOfDrag()
{
    m_positionSaveTask = m_scheduler.after(positionSaveDelay, [this] {
        if (m_window->isHeld()) {
            scheduleEndOfDrag(); // or the capsule would slip out of the hand
        } else {
            endDrag();
        }
    });
}

void TopPanelController::endDrag()
{
    m_positionSaveTask.reset();
    const auto frame = m_placement.finishDrag();
    if (frame && isVisible()) {
        m_window->glideTo(toQt(*frame, primaryGeometry()));
        if (!hasPointerWithin(0)) {
            setHovered(false);
        }
    }
}

} // namespace brevlin
