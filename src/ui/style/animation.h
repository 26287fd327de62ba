#pragma once

#include <QBasicTimer>
#include <QEasingCurve>
#include <QElapsedTimer>
#include <QObject>

#include <chrono>

class QWidget;

namespace brevlin {

/// False when the user asked for reduced motion, and under any style that does not animate.
bool animationsEnabled(const QWidget& widget);

struct AnimationTiming
{
    std::chrono::milliseconds duration;
    QEasingCurve::Type easing = QEasingCurve::OutCubic;
    /// At most this many steps from start to end: every step repaints, and a clock that ticks each second
    /// cannot afford sixty.
    int frames = 8;
};

/// A number that moves to its target in a few even steps and wakes nobody up between them. It jumps there at
/// once when its widget cannot be seen or motion is reduced, also when that comes about under way.
class ValueAnimation final : public QObject
{
    Q_OBJECT

public:
    /// Belong to the widget as a member, not as a child: a widget hides while it dies, and a child would then
    /// still tell it about the last step.
    explicit ValueAnimation(QWidget& widget, double value = 0);

    double value() const { return m_value; }
    double target() const { return m_target; }
    bool isRunning() const { return m_timer.isActive(); }

    /// Ends what is under way and stands at `value`.
    void setValue(double value);
    /// Starts from where the number stands now.
    void animateTo(double target, const AnimationTiming& timing);
    /// Moves to where the number stands so long after the start.
    void advanceTo(std::chrono::milliseconds elapsed);

Q_SIGNALS:
    void valueChanged(double value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QWidget& m_widget;
    QBasicTimer m_timer;
    QElapsedTimer m_elapsed;
    AnimationTiming m_timing{};
    double m_start = 0;
    double m_value = 0;
    double m_target = 0;
};

} // namespace brevlin
