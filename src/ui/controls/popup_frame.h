#pragma once

#include <QRectF>
#include <QRegion>

class QPainter;
class QWidget;

namespace brevlin {

class Theme;

// The frame of what floats before other windows: the tray's panel, menus and dialogs.

/// How far the shadow reaches around a frame, with a point to spare.
inline constexpr int popupShadowMargin = 20;

/// Whether what such a window leaves transparent shows what lies behind it, as the widget's style knows.
bool isComposited(const QWidget& widget);

enum class PopupShadow { none, soft };

/// The ground of a composited window: rounded, with a rim that keeps it apart from a window of the same
/// colour.
void paintPopup(QPainter& painter, const QRectF& content, double cornerRadius, PopupShadow shadow,
                const Theme& theme);

/// The ground of a window that nothing composes. Its corners are cut by popupMask.
void paintMaskedPopup(QPainter& painter, const QRectF& content, double cornerRadius, const Theme& theme);
QRegion popupMask(const QRect& content, double cornerRadius);

} // namespace brevlin
