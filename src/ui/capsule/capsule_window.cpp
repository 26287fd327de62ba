#include "ui/capsule/capsule_window.h"

#include "ui/capsule/capsule_controls.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/shapes.h"
#include "ui/style/translucent.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <utility>

namespace brevlin {

namespace {

using namespace std::chrono_literals;

constexpr AnimationTiming motionTiming{280ms, QEasingCurve::Linear, 17};
constexpr AnimationTiming fadeInTiming{180ms, QEasingCurve::OutQuad, 11};
// A hand moves the pointer less far between two events, mostly.
constexpr int sensingMargin = 60;
// Half covered pixels at the edge are clicked, too.
constexpr double edgeTolerance = 2.0;
constexpr AnimationTiming fadeOutTiming{160ms, QEasingCurve::InQuad, 10};

QRect between(const QRect& start, const QRect& target, double share)
{
    const auto mixed = [share](int first, int second) {
        return first + qRound((second - first) * share);
    };
    // The edges move, not the size: an edge that stays must not tremble.
    return {QPoint(mixed(start.left(), target.left()), mixed(start.top(), target.top())),
            QPoint(mixed(start.right(), target.right()), mixed(start.bottom(), target.bottom()))};
}

} // namespace

CapsuleWindow::CapsuleWindow(FloatingWindowSystem& system)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint)
    , m_system(system)
    , m_view(new TopCapsuleView(this))
    , m_surface(makeCapsuleSurface(*this, *m_view, system))
    , m_curve(QEasingCurve::BezierSpline)
    , m_motion(*this)
    , m_opacity(*this)
{
    m_curve.addCubicBezierSegment({0.22, 0.82}, {0.24, 1.0}, {1.0, 1.0});
    // Before the title, with which newer versions of Qt make the window's interface.
    makeSpokenGroup(*this, QAccessible::Window, [this] { return m_view->name(); });
    setWindowTitle(QStringLiteral("顶部专注胶囊"));
    setWindowRole(QStringLiteral("capsule"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_AlwaysShowToolTips); // it is never the active window
    setAttribute(Qt::WA_QuitOnClose, false);
    setCursor(Qt::OpenHandCursor);
    connect(&m_motion, &ValueAnimation::valueChanged, this, &CapsuleWindow::showStep);
    connect(&m_opacity, &ValueAnimation::valueChanged, this, [this](double opacity) {
        if (m_isDisappearing && opacity <= 0.0) {
            m_isDisappearing = false;
            hide();
        } else {
            m_surface->setOpacity(opacity);
        }
    });
}

QRect CapsuleWindow::frame() const
{
    return m_view->geometry().translated(m_surface->area().topLeft());
}

bool CapsuleWindow::covers(const QPoint& point, double distance) const
{
    const QRectF grown = QRectF(frame()).adjusted(-distance, -distance, distance, distance);
    return continuousRoundedRect(grown, m_cornerRadius + distance)
        .contains(QPointF(point) + QPointF(0.5, 0.5));
}

bool CapsuleWindow::fades() const
{
    return m_isComposited && animationsEnabled(*this);
}

void CapsuleWindow::appear(const QRect& frame, double cornerRadius)
{
    m_surface->prepare();
    if (isPointerUncertain()) {
        windowHandle()->installEventFilter(this); // again changes nothing
    }
    followSystem();
    m_isDisappearing = false;
    putAt(frame, cornerRadius);
    m_opacity.setValue(fades() ? 0.0 : 1.0);
    m_surface->setOpacity(m_opacity.value());
    m_surface->show();
    m_opacity.animateTo(1.0, fadeInTiming);
}

void CapsuleWindow::disappear()
{
    if (!isVisible() || m_isDisappearing) {
        return;
    }
    if (!fades()) {
        hide();
        return;
    }
    m_isDisappearing = true;
    m_opacity.animateTo(0.0, fadeOutTiming);
}

void CapsuleWindow::stay()
{
    // A capsule that is fading in goes on doing so.
    if (std::exchange(m_isDisappearing, false)) {
        m_opacity.setValue(1.0);
    }
}

void CapsuleWindow::morphTo(const QRect& frame, double cornerRadius)
{
    startMotion(frame, cornerRadius);
}

void CapsuleWindow::putAt(const QRect& frame, double cornerRadius)
{
    endMotion();
    m_target = frame;
    m_cornerRadius = cornerRadius;
    letFall();
    m_view->setGeometry(frame.translated(-m_surface->area().topLeft()));
    m_view->setContentPlace(m_view->rect());
    fitWindow();
    updateShape();
}

void CapsuleWindow::moveTo(const QRect& frame)
{
    endMotion();
    m_target = frame;
    placeView(frame);
}

void CapsuleWindow::glideTo(const QRect& frame)
{
    startMotion(frame, m_cornerRadius);
}

// The capsule stays where it is on the desktop while its window changes around it, and is painted at once:
// what a resize leaves behind is not worth seeing.
void CapsuleWindow::fitWindow()
{
    QRect area = m_spansWay ? m_start | m_target : frame();
    m_isSensing = m_hasPointer && isPointerUncertain();
    if (m_isSensing) {
        area.adjust(-sensingMargin, -sensingMargin, sensingMargin, sensingMargin);
        // Not only after the window has grown: the old shape lies elsewhere in it, and the server would see
        // the pointer leave and enter.
        m_system.setShape(winId(), {{}, everythingOf(area.size())});
    }
    const QRect lies = frame();
    if (!m_surface->hold(area)) {
        return;
    }
    m_view->setGeometry(lies.translated(-m_surface->area().topLeft()));
    updateShape();
    repaint();
}

void CapsuleWindow::startMotion(const QRect& frame, double cornerRadius)
{
    letFall();
    if (!m_surface->connects(this->frame(), frame)) {
        putAt(frame, cornerRadius);
        return;
    }
    m_motion.setValue(0.0);
    m_start = this->frame();
    m_target = frame;
    m_cornerRadius = cornerRadius;
    m_motion.animateTo(1.0, motionTiming);
    // Its step is done already where nothing moves.
    if (m_motion.isRunning()) {
        m_spansWay = m_start.size() != m_target.size();
        fitWindow();
        showStep(0.0);
    }
}

void CapsuleWindow::endMotion()
{
    if (m_motion.isRunning()) {
        m_motion.setValue(1.0);
    }
}

void CapsuleWindow::showStep(double share)
{
    const bool isLast = !m_motion.isRunning();
    const QRect next = isLast ? m_target : between(m_start, m_target, m_curve.valueForProgress(share));
    const QSize before = m_view->size();
    const bool grows = next.width() * next.height() > before.width() * before.height();
    placeView(next);
    if (!m_isComposited && grows) {
        // What the shape uncovers would be black until it is painted.
        m_view->repaint();
    }
    if (isLast) {
        m_spansWay = false;
        fitWindow();
    }
    if (next.size() != before || share <= 0.0 || isLast) {
        updateShape();
    }
}

// A capsule that keeps its size takes its window along, so that nothing is painted anew.
void CapsuleWindow::placeView(const QRect& frame)
{
    if (!m_spansWay && frame.size() == m_view->size()) {
        m_surface->moveBy(frame.topLeft() - this->frame().topLeft());
    } else {
        m_view->setGeometry(frame.translated(-m_surface->area().topLeft()));
    }
    m_view->setContentPlace(m_target.translated(-frame.topLeft()));
}

// A compositor blends the pixels at the edge, so it is given the whole window and only the clicks are cut;
// without one the window itself is. While the capsule moves under a compositor, all of the way is its own,
// and the margin while the pointer is inside, which is to be heard of when it gets there.
void CapsuleWindow::updateShape()
{
    FloatingWindowSystem::Shape part;
    if (!m_isComposited) {
        part.seen = shape(ShapeEdge::hard);
    } else if (m_isSensing) {
        // GNOME would take the lack of a shape for the size that the window had when it was shaped last.
        part.clicked = everythingOf(m_surface->area().size());
    } else if (!m_motion.isRunning()) {
        part.clicked = shape(ShapeEdge::soft);
    } else if (const auto way = m_surface->clickedOnTheWay(m_start | m_target)) {
        part.clicked = {nativeRectangle(way->translated(-m_surface->area().topLeft()), *this)};
    }
    m_system.setShape(winId(), part);
    m_surface->takeEffect();
    if (m_isBlurred) {
        m_system.setBlurredPart(winId(), shape(ShapeEdge::hard));
    }
}

std::vector<FloatingWindowSystem::Rectangle> CapsuleWindow::everythingOf(const QSize& size) const
{
    return {nativeRectangle(QRect(QPoint(), size), *this)};
}

// Native pixels of the window.
std::vector<FloatingWindowSystem::Rectangle> CapsuleWindow::shape(ShapeEdge edge) const
{
    const double scale = devicePixelRatioF();
    const QPoint origin = (QPointF(m_view->pos()) * scale).toPoint();
    const QSize size = (QSizeF(m_view->size()) * scale).toSize();
    std::vector<FloatingWindowSystem::Rectangle> part;
    for (const QRect& rect : roundedRegion(size, m_cornerRadius * scale, edge).translated(origin)) {
        part.push_back({rect.x(), rect.y(), rect.width(), rect.height()});
    }
    return part;
}

void CapsuleWindow::followSystem()
{
    m_isComposited = m_system.isComposited();
    m_isBlurred = m_system.blurs(); // asked here only: every question waits for the X server
    m_view->setBackdrop(!m_isComposited ? CapsuleBackdrop::nothing
                        : m_isBlurred   ? CapsuleBackdrop::blurred
                                        : CapsuleBackdrop::clear);
    if (isVisible()) {
        updateShape();
        update();
    }
}

void CapsuleWindow::enterEvent(QEnterEvent* event)
{
    QWidget::enterEvent(event);
    if (isPointerUncertain()) {
        followPointer(event->globalPosition().toPoint());
    } else {
        setHasPointer(true);
    }
}

void CapsuleWindow::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    setHasPointer(false);
}

void CapsuleWindow::setHasPointer(bool hasPointer)
{
    if (std::exchange(m_hasPointer, hasPointer) != hasPointer) {
        fitWindow();
    }
    if (!m_isDragging) {
        Q_EMIT hovered(hasPointer);
    }
}

bool CapsuleWindow::isPointerUncertain() const
{
    return m_system.pointerSight() == FloatingWindowSystem::PointerSight::uncertain;
}

// What moves inside the margin has left the capsule, and one that was lost enters without an event.
void CapsuleWindow::followPointer(const QPoint& place)
{
    const bool isInside = m_heldAt || covers(place, edgeTolerance);
    if (isInside != m_hasPointer) {
        setHasPointer(isInside);
    }
    if (isInside) {
        Q_EMIT pointerMoved();
    }
}

// Every movement of the pointer, whichever control it is above.
bool CapsuleWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseMove) {
        followPointer(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
    }
    return QWidget::eventFilter(watched, event);
}

void CapsuleWindow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pointer = event->globalPosition().toPoint();
        m_heldAt = m_pointer;
        setCursor(Qt::ClosedHandCursor);
    }
}

void CapsuleWindow::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_heldAt) {
        return;
    }
    m_pointer = event->globalPosition().toPoint();
    const QPoint distance = m_pointer - *m_heldAt;
    if (!m_isDragging && distance.manhattanLength() <= capsuleDragThreshold) {
        return;
    }
    m_isDragging = true;
    m_surface->lift();
    Q_EMIT dragged(distance);
}

void CapsuleWindow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        letGo();
    }
}

void CapsuleWindow::letGo()
{
    m_heldAt.reset();
    setCursor(Qt::OpenHandCursor);
    if (std::exchange(m_isDragging, false)) {
        Q_EMIT released();
    }
}

// What is held is not to slip out of the hand.
void CapsuleWindow::letFall()
{
    if (!m_heldAt) {
        m_surface->drop();
    }
}

void CapsuleWindow::restartDrag()
{
    if (m_heldAt) {
        m_heldAt = m_pointer;
    }
}

// Other programs may offer to close it, but only the timer decides that.
void CapsuleWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

// A window that stays as large as it is shows at the end of a motion what lay there in its middle.
void CapsuleWindow::paintEvent(QPaintEvent* event)
{
    if (m_system.layers() != nullptr) {
        QPainter painter(this);
        clearTranslucent(painter, event->region());
    }
}

void CapsuleWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_hasPointer = false;
    letGo();
    letFall();
}

} // namespace brevlin
