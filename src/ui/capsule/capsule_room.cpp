#include "ui/capsule/capsule_room.h"

#include "app/capsule.h"

#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimerEvent>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

// Wherever the circle lies in the middle of it, each layout that it grows into lies inside.
constexpr QSize roomSize{
    2 * static_cast<int>(CapsuleLayouts::soundingTimerWidth - CapsuleLayouts::circleRadius + 1),
    static_cast<int>(CapsuleLayouts::island.height)};

constexpr int ghostDelay = 50; // milliseconds until what lies below it has been painted

/// Where a room begins that lies inside the screen, but for what it has to hold.
int roomStart(int wanted, int length, std::pair<int, int> screen, std::pair<int, int> held)
{
    const int inside = std::max(screen.first, std::min(wanted, screen.second - length));
    return std::clamp(inside, held.second - length, held.first);
}

LayerSurfaces::Rectangle toLayer(const QRect& rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

} // namespace

/// The picture of the capsule in somebody's hand.
class CapsuleGhost final : public QWidget
{
public:
    explicit CapsuleGhost(LayerSurfaces& layers)
        : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                               Qt::WindowTransparentForInput)
        , m_layers(layers)
    {
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_QuitOnClose, false);
        m_layers.adopt(winId(), LayerSurfaces::Kind::capsule);
    }

    void follow(const QRect& frame, const QPixmap& picture, const QPoint& on)
    {
        m_picture = picture;
        resize(frame.size());
        m_layers.place(winId(), toLayer(frame), {on.x(), on.y()});
        m_leaving = 0;
        show();
        update();
    }

    bool isSeen() const { return isVisible() && m_isPainted; }
    void leaveSoon() { m_leaving = startTimer(ghostDelay); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter(this).drawPixmap(0, 0, m_picture);
        m_isPainted = true;
    }

    void timerEvent(QTimerEvent* event) override
    {
        killTimer(event->timerId());
        if (event->timerId() == m_leaving) {
            hide();
            m_isPainted = false;
        }
    }

private:
    LayerSurfaces& m_layers;
    QPixmap m_picture;
    bool m_isPainted = false;
    int m_leaving = 0;
};

CapsuleRoom::CapsuleRoom(QWidget& window, QWidget& view, LayerSurfaces& layers)
    : m_window(window), m_view(view), m_layers(layers)
{}

CapsuleRoom::~CapsuleRoom() = default;

void CapsuleRoom::prepare()
{
    m_layers.adopt(m_window.winId(), LayerSurfaces::Kind::capsule);
    m_area = {};
}

void CapsuleRoom::show()
{
    m_window.show();
}

bool CapsuleRoom::isLost() const
{
    return m_layers.isLost(m_window.winId());
}

QRect CapsuleRoom::viewFrame() const
{
    return m_view.geometry().translated(m_area.topLeft());
}

bool CapsuleRoom::hold(const QRect& area)
{
    if (m_area.contains(area) && !isLost()) {
        return false;
    }
    m_area = roomAround(area, screenGeometry(area.center()));
    m_window.resize(m_area.size());
    if (!m_isLifted) {
        place(area.center());
    }
    return true;
}

QRect CapsuleRoom::screenGeometry(const QPoint& point) const
{
    const QScreen* screen = QGuiApplication::screenAt(point);
    return (screen != nullptr ? screen : m_window.screen())->geometry();
}

void CapsuleRoom::place(const QPoint& on)
{
    if (m_layers.place(m_window.winId(), toLayer(m_area), {on.x(), on.y()}) || !m_window.isVisible()) {
        return; // or about to be hidden
    }
    m_window.hide();
    m_layers.place(m_window.winId(), toLayer(m_area), {on.x(), on.y()});
    m_window.show();
}

// Places and shapes count from the next picture on, however small.
void CapsuleRoom::takeEffect()
{
    m_window.update(0, 0, 1, 1);
}

void CapsuleRoom::moveBy(const QPoint& way)
{
    m_area.translate(way);
    if (m_isLifted) {
        followGhost();
    } else if (!way.isNull()) {
        place(viewFrame().center());
        takeEffect();
    }
}

bool CapsuleRoom::connects(const QRect& from, const QRect& to) const
{
    return screenGeometry(from.center()) == screenGeometry(to.center());
}

void CapsuleRoom::setOpacity(double opacity)
{
    m_opacity = opacity;
    if (!m_isLifted) {
        showOpacity(opacity);
    }
}

void CapsuleRoom::showOpacity(double opacity)
{
    if (opacity >= 1.0) {
        m_view.setGraphicsEffect(nullptr);
        return;
    }
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(m_view.graphicsEffect());
    if (effect == nullptr) {
        effect = new QGraphicsOpacityEffect(&m_view);
        m_view.setGraphicsEffect(effect);
    }
    effect->setOpacity(opacity);
}

void CapsuleRoom::lift()
{
    if (!std::exchange(m_isLifted, true)) {
        if (!m_ghost) {
            m_ghost = std::make_unique<CapsuleGhost>(m_layers);
        }
        m_liftedFrom = viewFrame().center();
        followGhost();
    }
}

void CapsuleRoom::followGhost()
{
    const double scale = m_view.devicePixelRatioF();
    QPixmap picture((QSizeF(m_view.size()) * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    showOpacity(1.0);
    m_view.render(&picture, {}, {}, QWidget::DrawChildren);
    // It stays on the screen where it was taken, and reaches over its edge.
    m_ghost->follow(viewFrame(), picture, m_liftedFrom);
    if (m_ghost->isSeen()) {
        showOpacity(0.0);
    }
}

void CapsuleRoom::drop()
{
    if (!std::exchange(m_isLifted, false)) {
        return;
    }
    showOpacity(m_opacity);
    const QRect lies = viewFrame();
    m_area = roomAround(lies, screenGeometry(lies.center()));
    m_view.move(lies.topLeft() - m_area.topLeft());
    place(lies.center());
    m_window.update();
    m_ghost->leaveSoon();
}

QRect roomAround(const QRect& area, const QRect& screen)
{
    const QSize size = roomSize.expandedTo(area.size());
    const int left = area.center().x() - size.width() / 2;
    return {QPoint(roomStart(left, size.width(), {screen.left(), screen.right() + 1},
                             {area.left(), area.right() + 1}),
                   roomStart(area.top(), size.height(), {screen.top(), screen.bottom() + 1},
                             {area.top(), area.bottom() + 1})),
            size};
}

} // namespace brevlin
