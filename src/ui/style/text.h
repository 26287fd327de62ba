#pragma once

#include <QString>

#include <string_view>

class QPainter;
class QRectF;

namespace brevlin {

/// The core's UTF-8 as Qt's text. One that the built-in fonts cannot draw, as of a file's name, brings in the
/// system's.
QString qtText(std::string_view text);

/// For a tool tip, which would take what looks like markup for it.
QString toolTipText(const QString& plain);

/// One line of text in the painter's font, vertically centred by that font's own height. Unlike QPainter's
/// alignment, which reckons with the fallback font of each text, it puts Chinese and Latin texts on one
/// baseline.
void drawTextOnBaseline(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

} // namespace brevlin
