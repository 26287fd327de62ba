#include "ui/style/text.h"

#include "ui/style/built_in_fonts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextDocument>

#include <cmath>

namespace brevlin {

QString qtText(std::string_view text)
{
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    if (!BuiltInFonts::cover(result)) {
        BuiltInFonts::bringInSystem();
    }
    return result;
}

QString toolTipText(const QString& plain)
{
    return Qt::mightBeRichText(plain) ? Qt::convertFromPlainText(plain) : plain;
}

void drawTextOnBaseline(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text)
{
    const QFontMetricsF metrics(painter.font());
    double x = rect.left();
    if (alignment & Qt::AlignHCenter) {
        x += (rect.width() - metrics.horizontalAdvance(text)) / 2;
    } else if (alignment & Qt::AlignRight) {
        x += rect.width() - metrics.horizontalAdvance(text);
    }
    const double top = rect.top() + (rect.height() - metrics.height()) / 2;
    painter.drawText(QPointF(x, std::round(top + metrics.ascent())), text);
}

} // namespace brevlin
