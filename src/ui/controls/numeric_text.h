#pragma once

#include "ui/style/animation.h"
#include "ui/style/theme.h"

#include <QFont>
#include <QFontMetricsF>
#include <QStaticText>
#include <QWidget>

#include <array>
#include <optional>
#include <vector>

namespace brevlin {

/// A text whose digits never shift: each stands in a cell as wide as the widest digit. When the text changes,
/// only the pieces that differ are repainted, cross-fading in place; a text of another width is there at
/// once.
class NumericText final : public QWidget
{
    Q_OBJECT

public:
    explicit NumericText(const QFont& font, QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    void setColor(ThemeColor color);
    /// In place of the theme's colour.
    void setInk(const QColor& ink);
    void setTextFont(const QFont& font);
    /// Whether a change fades; without it, it is there at once.
    void setFades(bool fades) { m_fades = fades; }
    void setAlignment(Qt::Alignment alignment);
    /// How far (0 to 1) the text may shrink when its room is narrow; 1, the default, never shrinks.
    void setMinimumScale(double scale);
    /// The opaque colour that lies under the whole widget, where that is known: a change then repaints
    /// nothing beneath it.
    void setBackdrop(std::optional<ThemeColor> backdrop);
    /// The same in place of a colour of the theme; it may be translucent where the window is.
    void setPaper(const std::optional<QColor>& paper);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// A piece of text in its place: one digit in its cell, or what stands between digits.
    struct Piece
    {
        QString text;
        double left = 0;  ///< of the cell, from the start of the text
        double width = 0; ///< of the cell
        double inset = 0; ///< from the cell's left to the piece
        double rise = 0;  ///< above the baseline
        bool operator==(const Piece&) const = default;
    };
    /// What the layout needs to know of a font; measured once, not on every tick.
    struct Cells
    {
        explicit Cells(const QFont& font);

        QFontMetricsF metrics;
        std::array<double, 10> advances{};  ///< of the digits
        std::array<QStaticText, 10> digits; ///< shaped once: to shape one takes longer than to paint it
        double digitWidth = 0;              ///< of the widest digit
        double colonWidth = 0;
        double colonRise = 0; ///< lifts a colon to the middle of the digits
    };
    static std::vector<Piece> pieces(const QString& text, const Cells& cells);

    /// The fade of the last change, from 0 to 1.
    ValueAnimation& transition() { return m_transition; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Placement
    {
        double left = 0;
        double baseline = 0;
        double scale = 1;
    };
    Placement placement() const;
    QRect dirtyRect() const;
    void paintPieces(QPainter& painter, const QRectF& exposed, const std::vector<Piece>& pieces,
                     double opacity) const;
    void paint(QPainter& painter, const QRect& part) const;
    void updateOpaqueness();
    void updateChanged();

    QFont m_font;
    Cells m_cells;
    QString m_text;
    ThemeColor m_color = ThemeColor::label;
    std::optional<QColor> m_ink;
    bool m_fades = true;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
    double m_minimumScale = 1;
    std::optional<ThemeColor> m_backdrop;
    std::optional<QColor> m_paper;
    std::vector<Piece> m_steady;   ///< stands as before
    std::vector<Piece> m_arriving; ///< fades in
    std::vector<Piece> m_leaving;  ///< fades out
    double m_width = 0;            ///< of the text at full scale
    ValueAnimation m_transition;
};

} // namespace brevlin
