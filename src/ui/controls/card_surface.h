#pragma once

#include <QFrame>
#include <QMargins>

class QPainter;
class QRect;

namespace brevlin {

class Theme;

/// A container on a card: rounded, bordered by a hairline, with a faint shadow. Its contents rectangle keeps
/// `padding` from the card's edge; give it a layout without margins. The widget is larger than the card by
/// shadowMargins, which layouts do not see, and lies on the theme's canvas: under BrevlinStyle the card
/// itself fills its place.
class CardSurface : public QFrame
{
    Q_OBJECT

public:
    static constexpr double cornerRadius = 14;
    static constexpr QMargins shadowMargins{4, 3, 4, 5};

    explicit CardSurface(int padding, QWidget* parent = nullptr);

    /// The card without its shadow, in the widget's coordinates.
    QRect cardRect() const { return rect().marginsRemoved(shadowMargins); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int m_padding;
};

/// What lies under a card's shadow and corners.
enum class CardGround { canvas, unknown };
/// A card without contents on all of `whole`, of which its shadow takes the margins.
void paintCardSurface(QPainter& painter, const QRect& whole, const Theme& theme, CardGround ground);

} // namespace brevlin
