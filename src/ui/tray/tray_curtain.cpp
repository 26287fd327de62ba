#include "ui/tray/tray_curtain.h"

#include "ui/style/translucent.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

namespace brevlin {

TrayCurtain::TrayCurtain(LayerSurfaces& layers)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint), m_layers(layers)
{
    setWindowTitle(QStringLiteral("Brevlin"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
}

TrayCurtain::~TrayCurtain() = default;

void TrayCurtain::raise(QScreen& screen)
{
    fill(screen, LayerSurfaces::Kind::stage);
    for (QScreen* other : QGuiApplication::screens()) {
        if (other != &screen) {
            auto& curtain = m_others.emplace_back(std::make_unique<TrayCurtain>(m_layers));
            connect(curtain.get(), &TrayCurtain::pressed, this, &TrayCurtain::pressed);
            curtain->fill(*other, LayerSurfaces::Kind::curtain);
        }
    }
}

void TrayCurtain::fill(QScreen& screen, LayerSurfaces::Kind kind)
{
    const QRect area = screen.geometry();
    m_layers.adopt(winId(), kind);
    m_layers.place(winId(), {area.x(), area.y(), area.width(), area.height()},
                   {area.center().x(), area.center().y()});
    setGeometry(area);
    show();
}

void TrayCurtain::lower()
{
    hide();
    for (auto& other : m_others) {
        other.release()->deleteLater(); // it may have heard the press that ends it
    }
    m_others.clear();
}

void TrayCurtain::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    clearTranslucent(painter, event->region());
}

void TrayCurtain::mousePressEvent(QMouseEvent* /*event*/)
{
    Q_EMIT pressed();
}

} // namespace brevlin
