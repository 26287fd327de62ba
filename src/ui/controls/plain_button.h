#pragma once

#include "ui/style/focus_ring.h"

#include <QAbstractButton>
#include <QAccessible>

namespace brevlin {

enum class ControlState { normal, hovered, pressed, disabled };

/// What every button of ours shares: one reading of hovered, pressed and disabled, a focus ring for the
/// keyboard only, and focus that a click does not steal. Its text is its accessible name.
class PlainButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PlainButton(QWidget* parent = nullptr);

    ControlState state() const;
    /// What it is to assistive technology.
    virtual QAccessible::Role role() const { return QAccessible::Button; }
    bool showsFocusRing() const { return m_keyboardFocus.isShown(); }
    /// One stop of the keyboard among several buttons: the arrow keys ask for the one beside it.
    void setStandsInRow(bool standsInRow) { m_standsInRow = standsInRow; }
    bool standsInRow() const { return m_standsInRow; }

Q_SIGNALS:
    /// -1 for the one before, 1 for the one behind.
    void neighborRequested(int distance);

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    KeyboardFocus m_keyboardFocus;
    bool m_standsInRow = false;
};

/// A plain button that stands for one of several places and may be the one that is shown. Assistive
/// technology sees a tab that is selected or not.
class SelectableButton : public PlainButton
{
    Q_OBJECT

public:
    explicit SelectableButton(QWidget* parent = nullptr);

    QAccessible::Role role() const override { return QAccessible::PageTab; }
    bool isSelected() const { return m_isSelected; }
    void setSelected(bool isSelected);

private:
    bool m_isSelected = false;
};

} // namespace brevlin
