#pragma once

#include <QString>

#include <string_view>

class QPainter;
class QRectF;

namespace brevlin {

/// The core's UTF-8 as Qt's text.
inline QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// One line of text in the painter's font, vertically centred by that font's own height. Unlike QPainter's
/// alignment, which reckons with the fallback font of each text, it puts Chinese and Latin texts on one
/// baseline.
void drawTextOnBaseline(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

} // namespace brevlin
