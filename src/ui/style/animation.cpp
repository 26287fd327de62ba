#include "ui/style/animation.h"

#include <QEvent>
#include <QStyle>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace brevlin {

bool animationsEnabled(const QWidget& widget)
{
    return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

ValueAnimation::ValueAnimation(QWidget& widget, double value)
    : m_widget(widget), m_start(value), m_value(value), m_target(value)
{}

void ValueAnimation::setValue(double value)
{
    m_timer.stop();
    m_widget.removeEventFilter(this);
    m_target = value;
    if (value == m_value)
        return;
    m_value = value;
    Q_EMIT valueChanged(m_value);
}

void ValueAnimation::animateTo(double target, const AnimationTiming& timing)
{
    if (!animationsEnabled(m_widget) || !m_widget.isVisible() || timing.frames < 1) {
        setValue(target);
        return;
    }
    if (target == m_target)
        return;
    m_start = m_value;
    m_target = target;
    m_timing = timing;
    m_elapsed.start();
    m_widget.installEventFilter(this);
    m_timer.start(static_cast<int>(timing.duration.count()) / timing.frames, this);
}

void ValueAnimation::advanceTo(std::chrono::milliseconds elapsed)
{
    if (!isRunning())
        return;
    const double share =
        static_cast<double>(elapsed.count()) / static_cast<double>(m_timing.duration.count());
    // A timer may fire a little early; half a step of grace keeps the number of steps as promised.
    const double step = std::floor(share * m_timing.frames + 0.5);
    if (step >= m_timing.frames) {
        setValue(m_target);
        return;
    }
    const double eased =
        QEasingCurve(m_timing.easing).valueForProgress(std::max(0.0, step / m_timing.frames));
    const double value = m_start + (m_target - m_start) * eased;
    if (value == m_value)
        return;
    m_value = value;
    Q_EMIT valueChanged(m_value);
}

bool ValueAnimation::eventFilter(QObject* watched, QEvent* event)
{
    const bool isHidden = event->type() == QEvent::Hide;
    const bool isStilled = event->type() == QEvent::StyleChange && !animationsEnabled(m_widget);
    if (watched == &m_widget && (isHidden || isStilled))
        setValue(m_target);
    return false;
}

void ValueAnimation::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        advanceTo(std::chrono::milliseconds(m_elapsed.elapsed()));
}

} // namespace brevlin
