#pragma once

#include "ui/style/plain_button.h"

namespace brevlin {

/// A text that acts when it is pressed: a way out of what a row says.
class LinkButton final : public PlainButton
{
    Q_OBJECT

public:
    explicit LinkButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace brevlin
