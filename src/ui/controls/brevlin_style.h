#pragma once

#include <QImage>
#include <QProxyStyle>
#include <QWidget>

#include <functional>
#include <utility>

namespace brevlin {

/// The application's style: Fusion with tool tips and menus of the theme, the user's wish for less motion,
/// and whether windows are composited. Widgets ask their style, so that neither needs another channel.
class BrevlinStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    BrevlinStyle();

    bool reducesMotion() const { return m_reducesMotion; }
    /// Animations that are under way end at once.
    void setReducesMotion(bool reducesMotion);

    /// Asked whenever a menu or a dialog is about to be seen; without it nothing is composited.
    void setCompositing(std::function<bool()> isComposited) { m_isComposited = std::move(isComposited); }
    bool isComposited() const { return m_isComposited && m_isComposited(); }

    /// Sends a picture to a place of a window, in pixels; false where that cannot be done. Without a sender
    /// it cannot.
    using PictureSender = std::function<bool(WId window, const QImage& picture, const QPoint& place)>;
    void setPictureSender(PictureSender sender) { m_pictureSender = std::move(sender); }
    bool canSendPictures() const { return static_cast<bool>(m_pictureSender); }
    bool sendPicture(WId window, const QImage& picture, const QPoint& place) const
    {
        return m_pictureSender && m_pictureSender(window, picture, place);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

private:
    bool m_reducesMotion = false;
    std::function<bool()> m_isComposited;
    PictureSender m_pictureSender;
};

} // namespace brevlin
