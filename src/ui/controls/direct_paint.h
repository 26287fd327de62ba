#pragma once

#include <functional>

class QPainter;
class QRect;
class QWidget;

namespace brevlin {

/// Paints a part of a widget now and sends it alone to the screen. Of what was sent in the usual way Qt waits
/// for the X server to have read it before that place is painted again, which costs two wake-ups a picture:
/// too many for what changes each second. `paint` is given a painter in the widget's coordinates, clipped to
/// the part, and leaves no pixel of it as it was.
///
/// False, and nothing has happened, where the part is not open to be seen or the style has no way to the
/// screen: it is then to be painted by QWidget::update().
bool paintDirectly(QWidget& widget, const QRect& part, const std::function<void(QPainter&)>& paint);

} // namespace brevlin
