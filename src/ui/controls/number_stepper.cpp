#include "ui/controls/number_stepper.h"

#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>

namespace brevlin {

namespace {

constexpr int fieldHeight = 26;
constexpr int fieldPadding = 7;
constexpr double fieldRadius = 6.5;
constexpr double buttonRadius = 7;
constexpr int symbolSize = 13;
constexpr int leastDigits = 2;
constexpr int repeatDelay = 400;   // milliseconds until a held button repeats
constexpr int repeatInterval = 70; // and from one step to the next
constexpr int gap = 5;             // between the number and the words around it

double widthOf(const QString& text)
{
    return QFontMetricsF(textFont(TextRole::body)).horizontalAdvance(text);
}

} // namespace

NumberField::NumberField(QWidget* parent) : QSpinBox(parent)
{
    setFrame(false);
    setButtonSymbols(NoButtons);
    setKeyboardTracking(false);
    setCorrectionMode(CorrectToNearestValue);
    setAlignment(Qt::AlignCenter);
    setLocale(QLocale::c());
    setFont(textFont(TextRole::body, QFont::Medium));
    setAttribute(Qt::WA_Hover);
    setContextMenuPolicy(Qt::NoContextMenu);
    lineEdit()->setTextMargins(0, 0, 0, 0);
    lineEdit()->installEventFilter(this);
    applyTheme();
}

QSize NumberField::sizeHint() const
{
    const auto digits = std::max<qsizetype>(leastDigits, cleanText().size());
    const double digit = QFontMetricsF(font()).horizontalAdvance(QLatin1Char('0'));
    return {static_cast<int>(std::ceil(digit * static_cast<double>(digits))) + 2 * fieldPadding, fieldHeight};
}

void NumberField::applyTheme()
{
    // The frame is painted here, so that the editor inside it stays clear.
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    lineEdit()->setPalette(clear);
}

void NumberField::changeEvent(QEvent* event)
{
    QSpinBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

bool NumberField::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverLeave:
        update();
        break;
    case QEvent::ShortcutOverride:
        // Escape takes back what was typed before it closes the window.
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && isBeingTyped()) {
            event->accept();
            return true;
        }
        break;
    default:
        break;
    }
    return QSpinBox::event(event);
}

bool NumberField::isBeingTyped() const
{
    return text() != textFromValue(value());
}

bool NumberField::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        update();
    return QSpinBox::eventFilter(watched, event);
}

void NumberField::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusGained(*event);
    QSpinBox::focusInEvent(event);
    selectAll();
    update();
}

void NumberField::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusLost(*event);
    QSpinBox::focusOutEvent(event);
    lineEdit()->deselect();
    update();
}

void NumberField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && isBeingTyped()) {
        lineEdit()->setText(textFromValue(value()));
        selectAll();
        return;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QSpinBox::keyPressEvent(event);
    if (isReturn)
        selectAll();
}

// The wheel scrolls the screen; a number that it changed in passing would go unnoticed.
void NumberField::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

void NumberField::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isPointedAt = isEnabled() && underMouse();
    const double strength = !isEnabled() ? 0.03 : hasFocus() ? 0.09 : isPointedAt ? 0.085 : 0.055;
    painter.fillPath(continuousRoundedRect(rect(), fieldRadius), theme.color(ThemeColor::label, strength));
    if (m_keyboardFocus.isShown())
        paintFocusRing(painter, rect(), fieldRadius, theme);
    else if (hasFocus())
        paintHairlineInside(painter, rect(), fieldRadius, theme.color(ThemeColor::tertiaryLabel));
}

StepButton::StepButton(Symbol symbol, Qt::Edge roundedSide, QWidget* parent)
    : PlainButton(parent), m_symbol(symbol), m_roundedSide(roundedSide)
{
    // The keyboard has the arrow keys on the number.
    setFocusPolicy(Qt::NoFocus);
    setAutoRepeat(true);
    setAutoRepeatDelay(repeatDelay);
    setAutoRepeatInterval(repeatInterval);
}

void StepButton::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Both halves are cut out of one rounded shape.
    QRectF whole = rect();
    if (m_roundedSide == Qt::LeftEdge)
        whole.setRight(whole.right() + width());
    else
        whole.setLeft(whole.left() - width());
    const double strength = current == ControlState::pressed    ? 0.16
                            : current == ControlState::hovered  ? 0.1
                            : current == ControlState::disabled ? 0.035
                                                                : 0.065;
    painter.setClipRect(rect());
    painter.fillPath(continuousRoundedRect(whole, buttonRadius), theme.color(ThemeColor::label, strength));
    if (m_roundedSide == Qt::LeftEdge) {
        const QRectF rule = QRectF(rect()).adjusted(0, 6, 0, -6);
        paintHairline(painter, rule, Qt::RightEdge, theme.color(ThemeColor::quaternaryLabel));
    }
    const ThemeColor ink =
        current == ControlState::disabled ? ThemeColor::quaternaryLabel : ThemeColor::label;
    paintSymbol(painter, m_symbol,
                {(width() - symbolSize) / 2.0, (height() - symbolSize) / 2.0, symbolSize, symbolSize},
                theme.color(ink, current == ControlState::disabled ? 1 : 0.8));
}

NumberStepper::NumberStepper(int minimum, int maximum, QWidget* parent)
    : QWidget(parent)
    , m_minimum(minimum)
    , m_maximum(maximum)
    , m_field(new NumberField(this))
    , m_decrease(new StepButton(Symbol::minus, Qt::LeftEdge, this))
    , m_increase(new StepButton(Symbol::plus, Qt::RightEdge, this))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusProxy(m_field);
    m_field->setRange(minimum, maximum);
    connect(m_field, &QSpinBox::valueChanged, this, &NumberStepper::choose);
    connect(m_decrease, &QAbstractButton::clicked, this, [this] { step(-1); });
    connect(m_increase, &QAbstractButton::clicked, this, [this] { step(1); });
}

void NumberStepper::step(int change)
{
    m_field->stepBy(change);
    if (!m_field->hasFocus())
        m_field->deselect();
}

void NumberStepper::setTexts(const Texts& texts)
{
    m_texts = texts;
    m_words = {texts.before.trimmed(), texts.after.trimmed()};
    m_decrease->setAccessibleName(texts.decrease);
    m_increase->setAccessibleName(texts.increase);
    setValue(value());
    updateGeometry();
}

void NumberStepper::setValue(int value)
{
    // Setting the number anew would take away what is just being typed.
    if (value != m_field->value() || value < m_field->minimum() || value > m_field->maximum()) {
        const QSignalBlocker quietly(m_field);
        m_field->setRange(std::min(m_minimum, value), std::max(m_maximum, value));
        m_field->setValue(value);
    }
    m_field->setAccessibleName(m_texts.before + QString::number(value) + m_texts.after);
    m_decrease->setEnabled(value > m_minimum);
    m_increase->setEnabled(value < m_maximum);
    layOut();
    update();
}

void NumberStepper::choose(int value)
{
    const int chosen = std::clamp(value, m_minimum, m_maximum);
    setValue(chosen);
    Q_EMIT valueChosen(chosen);
}

QSize NumberStepper::sizeHint() const
{
    const double words = widthOf(m_words.first) + widthOf(m_words.second) + 2.0 * gap;
    return {static_cast<int>(std::ceil(words)) + m_field->sizeHint().width() + 16 +
                2 * m_decrease->sizeHint().width(),
            fieldHeight};
}

void NumberStepper::layOut()
{
    const QSize field = m_field->sizeHint();
    const int top = (height() - fieldHeight) / 2;
    const int left = m_words.first.isEmpty() ? 0 : static_cast<int>(std::ceil(widthOf(m_words.first))) + gap;
    m_field->setGeometry(left, top, field.width(), field.height());
    const QSize button = m_decrease->sizeHint();
    m_decrease->setGeometry(width() - 2 * button.width(), top, button.width(), button.height());
    m_increase->setGeometry(width() - button.width(), top, button.width(), button.height());
}

void NumberStepper::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void NumberStepper::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setFont(textFont(TextRole::body));
    painter.setPen(theme.color(isEnabled() ? ThemeColor::label : ThemeColor::tertiaryLabel));
    drawTextOnBaseline(painter, rect(), Qt::AlignLeft, m_words.first);
    const QRectF rest(m_field->geometry().right() + 1 + gap, 0, width(), height());
    drawTextOnBaseline(painter, rest, Qt::AlignLeft, m_words.second);
}

} // namespace brevlin
