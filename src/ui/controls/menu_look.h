#pragma once

class QAction;
class QMenu;
class QPainter;
class QStyleOptionMenuItem;

namespace brevlin {

/// What the entry does cannot be taken back, and it shows it.
void markDestructive(QAction& action);

// How the application's style draws a menu.
void paintMenuGround(QPainter& painter, const QMenu& menu);
void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& item, const QMenu* menu);

} // namespace brevlin
