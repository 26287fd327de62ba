#include "ui/controls/menu_look.h"

#include "ui/controls/popup_frame.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QAction>
#include <QMenu>
#include <QPainter>
#include <QStyleOption>

namespace brevlin {

namespace {

constexpr const char* destructiveProperty = "brevlin::destructive";
constexpr double cornerRadius = 8;
constexpr double entryRadius = 5;
constexpr double entryPadding = 10;

bool isDestructive(const QStyleOptionMenuItem& item, const QMenu* menu)
{
    const QAction* action = menu != nullptr ? menu->actionAt(item.rect.center()) : nullptr;
    return action != nullptr && action->property(destructiveProperty).toBool();
}

} // namespace

void markDestructive(QAction& action)
{
    action.setProperty(destructiveProperty, true);
}

void paintMenuGround(QPainter& painter, const QMenu& menu)
{
    const Theme theme = Theme::of(menu);
    if (isComposited(menu)) {
        paintPopup(painter, menu.rect(), cornerRadius, PopupShadow::none, theme);
    } else {
        paintMaskedPopup(painter, menu.rect(), cornerRadius, theme);
    }
}

void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& item, const QMenu* menu)
{
    const Theme theme = Theme::of(item.palette);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF rect = item.rect;
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        paintHairline(painter, rect.adjusted(entryPadding, rect.height() / 2, -entryPadding, 0), Qt::TopEdge,
                      theme.color(ThemeColor::separator));
        return;
    }
    const bool isEnabled = (item.state & QStyle::State_Enabled) != 0;
    const bool isDangerous = isDestructive(item, menu);
    if (isEnabled && (item.state & QStyle::State_Selected) != 0) {
        painter.fillPath(continuousRoundedRect(rect, entryRadius),
                         isDangerous ? theme.color(ThemeColor::focus, 0.12)
                                     : theme.color(ThemeColor::label, 0.085));
    }
    painter.setFont(item.font);
    painter.setPen(theme.color(!isEnabled    ? ThemeColor::tertiaryLabel
                               : isDangerous ? ThemeColor::focusText
                                             : ThemeColor::label));
    QString text = item.text;
    drawTextOnBaseline(painter, rect.adjusted(entryPadding, 0, -entryPadding, 0), Qt::AlignLeft,
                       text.remove(QLatin1Char('&')));
}

} // namespace brevlin
