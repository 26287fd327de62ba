#pragma once

#include "ui/controls/plain_button.h"

namespace brevlin {

/// A text that acts when it is pressed: a way out of what a row says.
class LinkButton final : public PlainButton
{
    Q_OBJECT

public:
    static constexpr int bleed = 7; ///< from its bounds to what is seen of it

    explicit LinkButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace brevlin
