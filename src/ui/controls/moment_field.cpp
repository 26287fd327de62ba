#include "ui/controls/moment_field.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QLineEdit>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace brevlin {

namespace {

constexpr int fieldHeight = 28;
constexpr int padding = 9;
constexpr double fieldRadius = 7;

} // namespace

MomentField::MomentField(QWidget* parent, Precision precision) : QDateTimeEdit(parent)
{
    setFrame(false);
    setButtonSymbols(NoButtons);
    setLocale(QLocale::c());
    setTimeSpec(Qt::UTC); // whose days have all their hours
    setDisplayFormat(precision == Precision::day ? QStringLiteral("yyyy-MM-dd")
                                                 : QStringLiteral("yyyy-MM-dd HH:mm"));
    setFont(textFont(TextRole::body));
    setAttribute(Qt::WA_Hover);
    setContextMenuPolicy(Qt::NoContextMenu);
    lineEdit()->setTextMargins(padding - 2, 0, 0, 0);
    applyTheme();
}

QSize MomentField::sizeHint() const
{
    const double text = QFontMetricsF(font()).horizontalAdvance(
        QStringLiteral("0000-00-00 00:00").left(displayFormat().size()));
    return {static_cast<int>(std::ceil(text)) + 2 * padding, fieldHeight};
}

void MomentField::applyTheme()
{
    // The ground is painted here, so that the editor inside it stays clear.
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    lineEdit()->setPalette(clear);
}

bool MomentField::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        update();
    }
    return QDateTimeEdit::event(event);
}

void MomentField::changeEvent(QEvent* event)
{
    QDateTimeEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        applyTheme();
    }
}

void MomentField::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusGained(*event);
    QDateTimeEdit::focusInEvent(event);
    update();
}

void MomentField::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusLost(*event);
    QDateTimeEdit::focusOutEvent(event);
    update();
}

// Turning the wheel over a date in passing would change it unnoticed.
void MomentField::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

void MomentField::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double strength = !isEnabled() ? 0.03 : hasFocus() ? 0.09 : underMouse() ? 0.085 : 0.055;
    painter.fillPath(continuousRoundedRect(rect(), fieldRadius), theme.color(ThemeColor::label, strength));
    if (m_keyboardFocus.isShown()) {
        paintFocusRing(painter, rect(), fieldRadius, theme);
    } else if (hasFocus()) {
        paintHairlineInside(painter, rect(), fieldRadius, theme.color(ThemeColor::tertiaryLabel));
    }
}

} // namespace brevlin
