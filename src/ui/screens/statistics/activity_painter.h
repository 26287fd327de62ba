#pragma once

#include "ui/screens/statistics/activity_picture.h"

class QPainter;

namespace brevlin {

/// What is moved sideways with the chart.
void paintActivity(QPainter& painter, const ActivityPicture& picture, const Theme& theme);
/// What stays where it is meanwhile.
void paintPinned(QPainter& painter, const ActivityPicture& picture, const Theme& theme);
/// The element under the pointer, over what is painted already.
void paintPointedAt(QPainter& painter, const ActivityPicture& picture, std::size_t index, const Theme& theme);
/// The element that the keyboard is on.
void paintFocused(QPainter& painter, const ActivityPicture& picture, std::size_t index, const Theme& theme);

} // namespace brevlin
