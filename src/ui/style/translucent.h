#pragma once

class QPainter;
class QRegion;

namespace brevlin {

/// Leaves nothing in this part of a translucent window, before something is painted there. Qt does so itself,
/// but not in a picture that it begins beside those which a Wayland compositor still reads: what the last one
/// showed there would stay.
void clearTranslucent(QPainter& painter, const QRegion& part);

} // namespace brevlin
