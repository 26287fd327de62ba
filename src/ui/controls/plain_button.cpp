#include "ui/controls/plain_button.h"

#include "ui/controls/accessibility.h"

#include <QAccessible>
#include <QEvent>
#include <QKeyEvent>

namespace brevlin {

namespace {

/// In a row of buttons, by an arrow key.
int distanceOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        return -1;
    case Qt::Key_Right:
    case Qt::Key_Down:
        return 1;
    default:
        return 0;
    }
}

} // namespace

PlainButton::PlainButton(QWidget* parent) : QAbstractButton(parent)
{
    installAccessibility();
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

ControlState PlainButton::state() const
{
    if (!isEnabled())
        return ControlState::disabled;
    if (isDown())
        return ControlState::pressed;
    return underMouse() ? ControlState::hovered : ControlState::normal;
}

bool PlainButton::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && m_standsInRow &&
        distanceOf(static_cast<QKeyEvent*>(event)->key()) != 0) {
        event->accept(); // a screen's own arrow keys stand back
        return true;
    }
    return QAbstractButton::event(event);
}

void PlainButton::keyPressEvent(QKeyEvent* event)
{
    const int distance = m_standsInRow ? distanceOf(event->key()) : 0;
    if (distance != 0) {
        Q_EMIT neighborRequested(distance);
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void PlainButton::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusGained(*event);
    QAbstractButton::focusInEvent(event);
}

void PlainButton::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusLost(*event);
    QAbstractButton::focusOutEvent(event);
}

SelectableButton::SelectableButton(QWidget* parent) : PlainButton(parent) {}

void SelectableButton::setSelected(bool isSelected)
{
    if (isSelected == m_isSelected)
        return;
    m_isSelected = isSelected;
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
    update();
}

} // namespace brevlin
