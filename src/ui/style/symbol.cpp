#include "ui/style/symbol.h"

#include "ui/style/drawing.h"
#include "ui/style/shapes.h"

#include <QPainter>
#include <QPixmapCache>

#include <array>
#include <cmath>

namespace brevlin {

namespace {

constexpr std::array names{
    "",
    "arrow.counterclockwise",
    "arrow.down.right.and.arrow.up.left",
    "arrow.triangle.2.circlepath",
    "arrow.up.left.and.arrow.down.right",
    "arrow.up.right",
    "bell.badge.fill",
    "bell.slash.fill",
    "calendar.badge.clock",
    "chart.line.uptrend.xyaxis",
    "checkmark",
    "checkmark.circle",
    "chevron.down",
    "chevron.left",
    "chevron.right",
    "chevron.up",
    "clock.badge.questionmark",
    "ellipsis",
    "envelope",
    "exclamationmark.triangle.fill",
    "flame",
    "flame.fill",
    "forward.end.fill",
    "globe",
    "minus",
    "pause.fill",
    "play.fill",
    "plus",
    "scope",
    "sparkles",
    "speaker.slash.fill",
    "stop.fill",
    "timer",
    "xmark",
};
static_assert(names.size() == static_cast<std::size_t>(Symbol::xmark) + 1);

QPixmap renderedSymbol(Symbol symbol, int pixels, const QColor& tint)
{
    const QString key = QStringLiteral("brevlin.symbol/%1/%2/%3")
                            .arg(QString(symbolName(symbol)))
                            .arg(pixels)
                            .arg(tint.rgba(), 8, 16, QLatin1Char('0'));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintDrawing(painter, symbolName(symbol), pixels);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), tint);
    painter.end();

    pixmap = QPixmap::fromImage(std::move(image));
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

QLatin1String symbolName(Symbol symbol)
{
    return QLatin1String(names[static_cast<std::size_t>(symbol)]);
}

void paintSymbol(QPainter& painter, Symbol symbol, const QRectF& rect, const QColor& tint)
{
    if (symbol == Symbol::none || rect.isEmpty())
        return;
    const double ratio = pixelsPerPoint(painter);
    const int pixels = std::max(1, static_cast<int>(std::lround(rect.width() * ratio)));
    QPixmap pixmap = renderedSymbol(symbol, pixels, tint);
    pixmap.setDevicePixelRatio(ratio);

    const QRectF aligned = alignedToPixels(painter, rect);
    const bool wasSmooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRectF(aligned.topLeft(), QSizeF(pixels / ratio, pixels / ratio)), pixmap,
                       QRectF(0, 0, pixels, pixels));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, wasSmooth);
}

SymbolView::SymbolView(Symbol symbol, int size, ThemeColor tint, QWidget* parent)
    : QWidget(parent), m_symbol(symbol), m_size(size), m_tint(tint)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SymbolView::setSymbol(Symbol symbol)
{
    m_symbol = symbol;
    update();
}

void SymbolView::setTint(ThemeColor tint)
{
    m_tint = tint;
    update();
}

QSize SymbolView::sizeHint() const
{
    return {m_size, m_size};
}

void SymbolView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF square((width() - m_size) / 2.0, (height() - m_size) / 2.0, m_size, m_size);
    paintSymbol(painter, m_symbol, square, Theme::of(*this).color(m_tint));
}

} // namespace brevlin
