#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/animation.h"
#include "ui/style/symbol.h"
#include "ui/style/theme.h"

namespace brevlin {

enum class CapsuleStyle {
    primary,     ///< filled with its tint, white text: the one thing to do next
    secondary,   ///< a quiet grey
    destructive, ///< a quiet red: takes away what cannot be had back
};

enum class ControlSize { regular, compact };

/// A capsule with a text and, before it, an optional symbol. At least 36 points high, 30 when compact; as
/// wide as its text asks.
class CapsuleButton final : public PlainButton
{
    Q_OBJECT

public:
    CapsuleButton(CapsuleStyle style, ControlSize size, QWidget* parent = nullptr);

    /// The colour of a primary button: a phase's colour. It is deepened where white text needs it.
    void setTint(ThemeColor tint);
    void setStyle(CapsuleStyle style);
    void setSymbol(Symbol symbol);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// What a button of this style looks like; opaque once painted over the background.
    struct Colors
    {
        QColor fill;
        QColor label;
    };
    static Colors colors(CapsuleStyle style, ThemeColor tint, ControlState state, const Theme& theme);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    void animatePress(bool isDown);
    double contentWidth() const;

    CapsuleStyle m_style;
    ControlSize m_size;
    ThemeColor m_tint = ThemeColor::focus;
    Symbol m_symbol = Symbol::none;
    ValueAnimation m_press;
};

} // namespace brevlin
