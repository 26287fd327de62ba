#pragma once

#include "ui/controls/plain_button.h"

namespace brevlin {

/// Three dots that open a menu.
class MoreButton final : public PlainButton
{
    Q_OBJECT

public:
    using PlainButton::PlainButton;

    QSize sizeHint() const override { return {28, 24}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace brevlin
