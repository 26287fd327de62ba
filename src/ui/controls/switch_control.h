#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/animation.h"

namespace brevlin {

/// An on-off switch; its title stands beside it and is its accessible name. Assistive technology sees a check
/// box. Whoever handles clicked() sets the state that holds afterwards: a change may be refused.
class SwitchControl final : public PlainButton
{
    Q_OBJECT

public:
    static constexpr int bleed = 3; ///< from its bounds to what is seen of it

    explicit SwitchControl(QWidget* parent = nullptr);

    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QSize sizeHint() const override { return {45, 29}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ValueAnimation m_position; // of the knob, 0 is off
};

} // namespace brevlin
