#pragma once

#include "ui/style/theme.h"

#include <QColor>
#include <QLatin1String>
#include <QRectF>
#include <QWidget>

class QPainter;

namespace brevlin {

/// Every symbol of the program; the drawing of each is resources/symbols/<symbolName>.svg, one family on a
/// 24-unit grid with strokes of 2 units.
enum class Symbol {
    none,
    arrowCounterclockwise,
    arrowDownRightAndArrowUpLeft,
    arrowTriangle2Circlepath,
    arrowUpLeftAndArrowDownRight,
    arrowUpRight,
    bellBadgeFill,
    bellSlashFill,
    calendarBadgeClock,
    chartLineUptrendXyaxis,
    checkmark,
    checkmarkCircle,
    chevronDown,
    chevronLeft,
    chevronRight,
    chevronUp,
    clockBadgeQuestionmark,
    ellipsis,
    envelope,
    exclamationmarkTriangleFill,
    flame,
    flameFill,
    forwardEndFill,
    globe,
    minus,
    pauseFill,
    playFill,
    plus,
    scope,
    sparkles,
    speakerSlashFill,
    stopFill,
    timer,
    xmark,
};

/// The name of the symbol's file; empty for none.
QLatin1String symbolName(Symbol symbol);

/// The symbol in the square `rect`, in one colour, on whole device pixels.
void paintSymbol(QPainter& painter, Symbol symbol, const QRectF& rect, const QColor& tint);

/// A symbol as a view, `size` x `size`; a decoration beside a text, without a name of its own.
class SymbolView final : public QWidget
{
    Q_OBJECT

public:
    SymbolView(Symbol symbol, int size, ThemeColor tint, QWidget* parent = nullptr);

    void setSymbol(Symbol symbol);
    void setTint(ThemeColor tint);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    int m_size;
    ThemeColor m_tint;
};

} // namespace brevlin
