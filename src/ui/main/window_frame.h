#pragma once

#include <QMargins>
#include <QObject>
#include <QPixmap>

class QPainter;
class QWidget;

namespace brevlin {

class WindowSystem;

/// The border of a window without one: a painted shadow with round corners where the window manager allows a
/// margin for it, else a hairline around a square window; and in both cases an edge that resizes the window.
class WindowFrame final : public QObject
{
    Q_OBJECT

public:
    static constexpr double cornerRadius = 11.0;

    WindowFrame(QWidget& window, WindowSystem& windowSystem);

    /// What of the window lies around its content.
    QMargins margins() const { return m_margins; }
    bool hasShadow() const { return m_hasShadow; }
    void paint(QPainter& painter) const;

public Q_SLOTS:
    /// To be called when the window's state or the window manager may have changed.
    void refresh();

Q_SIGNALS:
    void marginsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Qt::Edges edgesAt(const QPoint& position) const;
    bool canResize() const;
    void publishMargins() const;
    void paintShadow(QPainter& painter) const;

    QWidget& m_window;
    WindowSystem& m_windowSystem;
    QMargins m_margins;
    bool m_hasShadow = false;
    Qt::Edges m_hoveredEdges;
};

} // namespace brevlin
