#include "ui/main/metric_view.h"

#include "ui/controls/spoken_element.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

constexpr double padding = 18.0;
constexpr double lineSpacing = 7.0;
constexpr double symbolSize = 14.0;
constexpr double symbolSpacing = 5.0;
constexpr double valueSize = 20.0;
constexpr double smallestScale = 0.72;

QFont valueFont(double scale)
{
    return systemFont(valueSize * scale, QFont::DemiBold, FontDesign::rounded);
}

} // namespace

MetricView::MetricView(Symbol symbol, QWidget* parent) : QWidget(parent), m_symbol(symbol)
{
    makeSpokenElement(*this, QAccessible::StaticText,
                      [this] { return m_title + QStringLiteral(", ") + m_value; });
}

void MetricView::setTexts(const QString& title, const QString& value)
{
    if (title == m_title && value == m_value) {
        return;
    }
    m_title = title;
    m_value = value;
    updateGeometry();
    update();
}

QSize MetricView::minimumSizeHint() const
{
    const QFontMetricsF titleMetrics(textFont(TextRole::caption));
    const double width = std::max(symbolSize + symbolSpacing + titleMetrics.horizontalAdvance(m_title),
                                  QFontMetricsF(valueFont(smallestScale)).horizontalAdvance(m_value));
    const double height = titleMetrics.height() + lineSpacing + QFontMetricsF(valueFont(1.0)).height();
    return QSizeF(std::ceil(width + 2 * padding), std::ceil(height + 2 * padding)).toSize();
}

void MetricView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme theme = Theme::of(*this);
    const QFont titleFont = textFont(TextRole::caption);
    const double titleHeight = std::ceil(QFontMetricsF(titleFont).height());
    const double valueHeight = std::ceil(QFontMetricsF(valueFont(1.0)).height());
    const double width = this->width() - 2 * padding;
    double y = std::round((height() - titleHeight - lineSpacing - valueHeight) / 2);

    const QColor secondary = theme.color(ThemeColor::secondaryLabel);
    const QRectF symbolRect(padding, std::round(y + (titleHeight - symbolSize) / 2), symbolSize, symbolSize);
    paintSymbol(painter, m_symbol, symbolRect, secondary);
    painter.setFont(titleFont);
    painter.setPen(secondary);
    const double titleX = padding + symbolSize + symbolSpacing;
    const QString shownTitle =
        QFontMetricsF(titleFont).elidedText(m_title, Qt::ElideRight, width - titleX + padding);
    drawTextOnBaseline(painter, QRectF(titleX, y, width, titleHeight), Qt::AlignLeft, shownTitle);

    y += titleHeight + lineSpacing;
    const double needed = QFontMetricsF(valueFont(1.0)).horizontalAdvance(m_value);
    const double scale = needed > width ? std::max(width / needed, smallestScale) : 1.0;
    painter.setFont(valueFont(scale));
    painter.setPen(theme.color(ThemeColor::label));
    const QString shownValue =
        QFontMetricsF(valueFont(scale)).elidedText(m_value, Qt::ElideRight, std::ceil(width) + 1);
    drawTextOnBaseline(painter, QRectF(padding, y, width, valueHeight), Qt::AlignLeft, shownValue);
}

} // namespace brevlin
