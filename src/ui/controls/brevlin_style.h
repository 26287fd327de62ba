#pragma once

#include <QProxyStyle>

namespace brevlin {

/// The application's style: Fusion with tool tips and menus of the theme and the user's wish for less
/// motion. Every animation asks the style of
/// its widget, so that the wish needs no other channel.
class BrevlinStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    BrevlinStyle();

    bool reducesMotion() const { return m_reducesMotion; }
    /// Animations that are under way end at once.
    void setReducesMotion(bool reducesMotion);

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

private:
    bool m_reducesMotion = false;
};

} // namespace brevlin
