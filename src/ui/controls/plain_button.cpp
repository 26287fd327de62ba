#include "ui/controls/plain_button.h"

#include "ui/controls/accessibility.h"

#include <QAccessible>
#include <QEvent>

namespace brevlin {

PlainButton::PlainButton(QWidget* parent) : QAbstractButton(parent)
{
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
    switch (event->type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        update();
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
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

SelectableButton::SelectableButton(QWidget* parent) : PlainButton(parent)
{
    installAccessibility();
}

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
