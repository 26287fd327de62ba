#include "ui/controls/choice_button.h"

#include "ui/style/shapes.h"
#include "ui/style/symbol.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

constexpr int buttonHeight = 28;
constexpr int padding = 10;
constexpr int symbolSize = 12;
constexpr int symbolGap = 8;
constexpr double radius = 7;

} // namespace

ChoiceButton::ChoiceButton(QWidget* parent) : PlainButton(parent)
{
    connect(this, &QAbstractButton::clicked, this, &ChoiceButton::openMenu);
}

void ChoiceButton::setChoices(const QStringList& choices)
{
    m_choices = choices;
    setCurrentIndex(m_currentIndex);
    updateGeometry();
}

void ChoiceButton::setCurrentIndex(int index)
{
    m_currentIndex = index;
    setText(m_choices.value(index));
    update();
}

QSize ChoiceButton::sizeHint() const
{
    const QFontMetricsF metrics(textFont(TextRole::body));
    double widest = 0;
    for (const QString& choice : m_choices) {
        widest = std::max(widest, metrics.horizontalAdvance(choice));
    }
    return {static_cast<int>(std::ceil(widest)) + 2 * padding + symbolGap + symbolSize, buttonHeight};
}

void ChoiceButton::openMenu()
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int index = 0; index < m_choices.size(); ++index) {
        QAction* entry = menu->addAction(m_choices.at(index), this, [this, index] { choose(index); });
        entry->setCheckable(true);
        entry->setChecked(index == m_currentIndex);
        if (index == m_currentIndex) {
            menu->setActiveAction(entry);
        }
    }
    menu->popup(mapToGlobal(QPoint(0, height() + 2)));
}

void ChoiceButton::choose(int index)
{
    if (index >= 0 && index < m_choices.size() && index != m_currentIndex) {
        setCurrentIndex(index);
        Q_EMIT chosen(index);
    }
}

void ChoiceButton::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Down:
        choose(m_currentIndex + 1);
        break;
    case Qt::Key_Up:
        choose(m_currentIndex - 1);
        break;
    default:
        PlainButton::keyPressEvent(event);
    }
}

void ChoiceButton::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double strength = current == ControlState::pressed    ? 0.13
                            : current == ControlState::hovered  ? 0.085
                            : current == ControlState::disabled ? 0.03
                                                                : 0.055;
    painter.fillPath(continuousRoundedRect(rect(), radius), theme.color(ThemeColor::label, strength));
    const QColor ink =
        theme.color(current == ControlState::disabled ? ThemeColor::tertiaryLabel : ThemeColor::label);
    painter.setFont(textFont(TextRole::body));
    painter.setPen(ink);
    drawTextOnBaseline(painter, QRectF(rect()).adjusted(padding, 0, -padding, 0), Qt::AlignLeft, text());
    paintSymbol(painter, Symbol::chevronDown,
                {width() - padding - static_cast<double>(symbolSize), (height() - symbolSize) / 2.0,
                 symbolSize, symbolSize},
                theme.color(ThemeColor::tertiaryLabel));
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), radius, theme);
    }
}

} // namespace brevlin
