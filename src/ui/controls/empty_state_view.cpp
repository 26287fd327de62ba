#include "ui/controls/empty_state_view.h"

#include "ui/controls/spoken_element.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

namespace brevlin {

namespace {

constexpr double symbolSize = 44;
constexpr double symbolSpacing = 16;
constexpr double titleSize = 17;
constexpr double textSpacing = 6;

} // namespace

EmptyStateView::EmptyStateView(Symbol symbol, QWidget* parent) : QWidget(parent), m_symbol(symbol)
{
    setFocusPolicy(Qt::ClickFocus);
    makeSpokenElement(*this, QAccessible::StaticText,
                      [this] { return m_title + QStringLiteral(". ") + m_description; });
}

void EmptyStateView::setTexts(const QString& title, const QString& description)
{
    m_title = title;
    m_description = description;
    update();
}

void EmptyStateView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const Theme theme = Theme::of(*this);
    const QFont titleFont = systemFont(titleSize, QFont::Bold);
    const QFont descriptionFont = textFont(TextRole::callout);
    const double titleHeight = QFontMetricsF(titleFont).height();
    const double descriptionHeight = QFontMetricsF(descriptionFont).height();
    double y = (height() - symbolSize - symbolSpacing - titleHeight - textSpacing - descriptionHeight) / 2;
    paintSymbol(painter, m_symbol, QRectF((width() - symbolSize) / 2, y, symbolSize, symbolSize),
                theme.color(ThemeColor::tertiaryLabel));
    y += symbolSize + symbolSpacing;
    painter.setFont(titleFont);
    painter.setPen(theme.color(ThemeColor::label));
    drawTextOnBaseline(painter, QRectF(0, y, width(), titleHeight), Qt::AlignHCenter, m_title);
    y += titleHeight + textSpacing;
    painter.setFont(descriptionFont);
    painter.setPen(theme.color(ThemeColor::secondaryLabel));
    drawTextOnBaseline(painter, QRectF(0, y, width(), descriptionHeight), Qt::AlignHCenter, m_description);
}

} // namespace brevlin
