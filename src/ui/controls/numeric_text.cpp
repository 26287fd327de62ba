#include "ui/controls/numeric_text.h"

#include "ui/controls/accessibility.h"
#include "ui/controls/direct_paint.h"
#include "ui/style/animation.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

// Waking up and painting costs about a third of a millisecond a picture, whatever is painted, and a running
// clock changes every second. One picture between the old digit and the new one, at once, is what the eye
// needs to see the one become the other.
constexpr double between = 0.5;
constexpr AnimationTiming fade{std::chrono::milliseconds(80), QEasingCurve::Linear, 1};

constexpr double glyphOverhang = 2; // points that a glyph may reach out of its cell

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

std::size_t digitOf(QChar character)
{
    return static_cast<std::size_t>(character.unicode() - u'0');
}

double widthOf(const std::vector<NumericText::Piece>& pieces)
{
    return pieces.empty() ? 0 : pieces.back().left + pieces.back().width;
}

} // namespace

NumericText::Cells::Cells(const QFont& font) : metrics(font)
{
    for (std::size_t digit = 0; digit < advances.size(); ++digit) {
        const QChar character = QLatin1Char(static_cast<char>('0' + digit));
        advances[digit] = metrics.horizontalAdvance(character);
        digits[digit] = QStaticText(character);
        digits[digit].setTextFormat(Qt::PlainText);
    }
    digitWidth = std::ranges::max(advances);
    colonWidth = metrics.horizontalAdvance(QLatin1Char(':'));
    // Fonts set the colon for lower-case words; between digits it belongs in their middle.
    colonRise = metrics.tightBoundingRect(QStringLiteral(":")).center().y() -
                metrics.tightBoundingRect(QStringLiteral("0")).center().y();
}

NumericText::NumericText(const QFont& font, QWidget* parent)
    : QWidget(parent), m_font(font), m_cells(font), m_transition(*this, 1)
{
    installAccessibility();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(&m_transition, &ValueAnimation::valueChanged, this, &NumericText::updateChanged);
}

std::vector<NumericText::Piece> NumericText::pieces(const QString& text, const Cells& cells)
{
    std::vector<Piece> result;
    double left = 0;
    for (qsizetype begin = 0; begin < text.size();) {
        qsizetype end = begin + 1;
        Piece piece;
        if (isDigit(text[begin])) {
            piece.text = text.mid(begin, 1);
            piece.width = cells.digitWidth;
            piece.inset = (cells.digitWidth - cells.advances.at(digitOf(text[begin]))) / 2;
        } else {
            while (end < text.size() && !isDigit(text[end]))
                ++end;
            piece.text = text.mid(begin, end - begin);
            piece.width = piece.text == QStringLiteral(":") ? cells.colonWidth
                                                            : cells.metrics.horizontalAdvance(piece.text);
            const bool isBetweenDigits = begin > 0 && end < text.size();
            if (isBetweenDigits && piece.text == QStringLiteral(":"))
                piece.rise = cells.colonRise;
        }
        piece.left = left;
        left += piece.width;
        result.push_back(std::move(piece));
        begin = end;
    }
    return result;
}

void NumericText::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    m_transition.setValue(1);

    std::vector<Piece> before = std::move(m_steady);
    before.insert(before.end(), m_arriving.begin(), m_arriving.end());
    std::vector<Piece> after = pieces(text, m_cells);
    m_steady.clear();
    m_arriving.clear();
    m_leaving.clear();

    if (widthOf(after) != m_width || !m_fades) {
        m_steady = std::move(after);
        m_width = widthOf(m_steady);
        updateGeometry();
        update();
        return;
    }
    for (const Piece& piece : after)
        (std::ranges::find(before, piece) != before.end() ? m_steady : m_arriving).push_back(piece);
    std::ranges::copy_if(before, std::back_inserter(m_leaving), [&after](const Piece& piece) {
        return std::ranges::find(after, piece) == after.end();
    });
    m_transition.setValue(between);
    m_transition.animateTo(1, fade);
}

void NumericText::setColor(ThemeColor color)
{
    if (std::exchange(m_color, color) != color)
        update();
}

void NumericText::setInk(const QColor& ink)
{
    if (std::exchange(m_ink, ink) != ink)
        update();
}

void NumericText::setTextFont(const QFont& font)
{
    if (font == m_font)
        return;
    m_font = font;
    m_cells = Cells(font);
    m_width = 0; // so that the text is laid out anew, without a fade
    setText(std::exchange(m_text, {}));
}

void NumericText::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

void NumericText::setMinimumScale(double scale)
{
    m_minimumScale = std::clamp(scale, 0.1, 1.0);
    updateGeometry();
}

void NumericText::setBackdrop(std::optional<ThemeColor> backdrop)
{
    m_backdrop = backdrop;
    updateOpaqueness();
}

void NumericText::setPaper(const std::optional<QColor>& paper)
{
    if (std::exchange(m_paper, paper) != paper)
        updateOpaqueness();
}

void NumericText::updateOpaqueness()
{
    setAttribute(Qt::WA_OpaquePaintEvent, m_backdrop || m_paper);
    update();
}

QSize NumericText::sizeHint() const
{
    return {static_cast<int>(std::ceil(m_width)), static_cast<int>(std::ceil(m_cells.metrics.height()))};
}

QSize NumericText::minimumSizeHint() const
{
    const QSize full = sizeHint();
    return {static_cast<int>(std::ceil(full.width() * m_minimumScale)), full.height()};
}

void NumericText::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    paint(painter, event->rect());
}

void NumericText::paint(QPainter& painter, const QRect& part) const
{
    if (m_paper)
        painter.fillRect(part, *m_paper);
    else if (m_backdrop)
        painter.fillRect(part, Theme::of(*this).color(*m_backdrop));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(m_font);
    const Placement place = placement();
    painter.translate(place.left, place.baseline);
    painter.scale(place.scale, place.scale);

    const double progress = m_transition.value();
    const QRectF exposed((part.left() - place.left) / place.scale, 0, part.width() / place.scale, 0);
    paintPieces(painter, exposed, m_steady, 1);
    paintPieces(painter, exposed, m_leaving, 1 - progress);
    paintPieces(painter, exposed, m_arriving, progress);
}

void NumericText::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    update();
}

NumericText::Placement NumericText::placement() const
{
    Placement place;
    if (m_width > width() && m_width > 0)
        place.scale = std::max(m_minimumScale, width() / m_width);
    const double spare = width() - m_width * place.scale;
    if (m_alignment & Qt::AlignHCenter)
        place.left = spare / 2;
    else if (m_alignment & Qt::AlignRight)
        place.left = spare;
    const QFontMetricsF& metrics = m_cells.metrics;
    const double textHeight = (metrics.ascent() + metrics.descent()) * place.scale;
    place.baseline = std::round((height() - textHeight) / 2 + metrics.ascent() * place.scale);
    return place;
}

QRect NumericText::dirtyRect() const
{
    const Placement place = placement();
    double left = width();
    double right = 0;
    for (const std::vector<Piece>* group : {&m_arriving, &m_leaving}) {
        for (const Piece& piece : *group) {
            left = std::min(left, place.left + piece.left * place.scale);
            right = std::max(right, place.left + (piece.left + piece.width) * place.scale);
        }
    }
    return QRectF(left - glyphOverhang, 0, right - left + 2 * glyphOverhang, height()).toAlignedRect();
}

void NumericText::paintPieces(QPainter& painter, const QRectF& exposed, const std::vector<Piece>& pieces,
                              double opacity) const
{
    if (opacity <= 0)
        return;
    // A translucent pen, not the painter's opacity: with that Qt blends on its thread pool, at eight times
    // the cost.
    QColor ink = m_ink ? *m_ink : Theme::of(*this).color(m_color);
    ink.setAlphaF(ink.alphaF() * static_cast<float>(opacity));
    painter.setPen(ink);
    // Elsewhere Qt puts shaped text on another pixel than a text.
    const double scale = painter.deviceTransform().m11();
    const bool isWhole = scale == std::floor(scale);
    for (const Piece& piece : pieces) {
        // To shape what is clipped away costs most of a frame.
        const bool isExposed = piece.left - glyphOverhang < exposed.right() &&
                               piece.left + piece.width + glyphOverhang > exposed.left();
        const QPointF start(piece.left + piece.inset, -piece.rise);
        if (isExposed && isWhole && isDigit(piece.text[0]))
            painter.drawStaticText(start - QPointF(0, m_cells.metrics.ascent()),
                                   m_cells.digits.at(digitOf(piece.text[0])));
        else if (isExposed)
            painter.drawText(start, piece.text);
    }
}

void NumericText::updateChanged()
{
    if (m_arriving.empty() && m_leaving.empty())
        return;
    const QRect part = dirtyRect() & rect();
    const bool isOpaque = testAttribute(Qt::WA_OpaquePaintEvent);
    if (!isOpaque || !paintDirectly(*this, part, [&](QPainter& painter) { paint(painter, part); }))
        update(part);
}

} // namespace brevlin
