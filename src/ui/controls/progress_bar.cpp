#include "ui/controls/progress_bar.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QPainter>

#include <algorithm>

namespace brevlin {

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent)
{
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ProgressBar::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(capsulePath(rect()), theme.color(ThemeColor::label, 0.1));
    const double done = maximum() > 0 ? 1.0 * value() / maximum() : 0.0;
    if (done > 0.0) {
        const double width = std::max(done * rect().width(), 1.0 * thickness);
        painter.fillPath(capsulePath(QRectF(0, 0, width, rect().height())), theme.color(ThemeColor::focus));
    }
}

} // namespace brevlin
