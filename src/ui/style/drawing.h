#pragma once

#include <QLatin1String>

class QPainter;

namespace brevlin {

/// Paints resources/symbols/<name>.svg into the square of this side at the painter's origin.
void paintDrawing(QPainter& painter, QLatin1String name, double side);

} // namespace brevlin
