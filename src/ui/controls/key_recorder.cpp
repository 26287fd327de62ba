#include "ui/controls/key_recorder.h"

#include "ui/controls/spoken_element.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

constexpr int buttonHeight = 28;
constexpr int narrowest = 132; // so that those of several rows stand in a column
constexpr int padding = 10;
constexpr double radius = 7;

KeyModifiers held(Qt::KeyboardModifiers modifiers)
{
    return {.control = modifiers.testFlag(Qt::ControlModifier),
            .alt = modifiers.testFlag(Qt::AltModifier),
            .shift = modifiers.testFlag(Qt::ShiftModifier),
            .super = modifiers.testFlag(Qt::MetaModifier)};
}

bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Shift:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_Mode_switch:
        return true;
    default:
        return false;
    }
}

} // namespace

KeyRecorder::KeyRecorder(KeyAt keyAt, QWidget* parent) : PlainButton(parent), m_keyAt(std::move(keyAt))
{
    connect(this, &QAbstractButton::clicked, this, [this] { setRecording(!m_isRecording); });
}

void KeyRecorder::setTexts(const Texts& texts)
{
    m_texts = texts;
    refreshText();
}

void KeyRecorder::setKey(const std::optional<KeyCombination>& key)
{
    m_key = key;
    refreshText();
}

void KeyRecorder::refreshText()
{
    setText(m_isRecording ? (m_held.isEmpty() ? m_texts.prompt : m_held)
            : m_key       ? QString::fromStdString(m_key->text())
                          : m_texts.none);
    setAccessibleName(m_texts.title + (m_isRecording ? m_texts.prompt : text()));
    updateGeometry();
    update();
}

void KeyRecorder::setRecording(bool isRecording)
{
    if (std::exchange(m_isRecording, isRecording) == isRecording) {
        return;
    }
    m_held.clear();
    refreshText();
    if (isRecording) {
        setFocus(Qt::OtherFocusReason);
        grabKeyboard();
        qApp->installEventFilter(this);
        announce(*this, m_texts.prompt);
    } else {
        qApp->removeEventFilter(this);
        releaseKeyboard();
    }
    Q_EMIT recordingChanged(isRecording);
}

bool KeyRecorder::event(QEvent* event)
{
    if (!m_isRecording) {
        return PlainButton::event(event);
    }
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        event->accept();
        return true;
    case QEvent::KeyPress:
        take(static_cast<const QKeyEvent&>(*event));
        return true;
    case QEvent::KeyRelease:
        showHeld(static_cast<const QKeyEvent&>(*event).modifiers());
        return true;
    case QEvent::FocusOut:
    case QEvent::WindowDeactivate:
        setRecording(false);
        break;
    default:
        break;
    }
    return PlainButton::event(event);
}

// Whoever presses something else has changed his mind.
bool KeyRecorder::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType() && watched != this) {
        setRecording(false);
    }
    return PlainButton::eventFilter(watched, event);
}

void KeyRecorder::take(const QKeyEvent& event)
{
    if (event.isAutoRepeat()) {
        return;
    }
    const KeyModifiers modifiers = held(event.modifiers());
    if (isModifier(event.key())) {
        showHeld(event.modifiers());
        return;
    }
    const bool isAlone = modifiers == KeyModifiers{};
    if (isAlone && (event.key() == Qt::Key_Escape || event.key() == Qt::Key_Backspace)) {
        setRecording(false);
        if (event.key() == Qt::Key_Backspace) {
            Q_EMIT cleared();
        }
        return;
    }
    const auto name = m_keyAt(event.nativeScanCode());
    if (const auto key = name ? KeyCombination::of(modifiers, *name) : std::nullopt) {
        setRecording(false);
        Q_EMIT recorded(*key);
    } else {
        Q_EMIT refused(name ? Refusal::needsModifier : Refusal::unknownKey);
    }
}

void KeyRecorder::showHeld(Qt::KeyboardModifiers modifiers)
{
    m_held = QString::fromStdString(brevlin::text(held(modifiers)));
    refreshText();
}

void KeyRecorder::hideEvent(QHideEvent* event)
{
    setRecording(false);
    PlainButton::hideEvent(event);
}

QSize KeyRecorder::sizeHint() const
{
    const QFontMetricsF metrics(textFont(TextRole::body));
    const double width =
        std::max(metrics.horizontalAdvance(text()), metrics.horizontalAdvance(m_texts.prompt));
    return {std::max(narrowest, static_cast<int>(std::ceil(width)) + 2 * padding), buttonHeight};
}

void KeyRecorder::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double strength = current == ControlState::pressed    ? 0.13
                            : current == ControlState::hovered  ? 0.085
                            : current == ControlState::disabled ? 0.03
                                                                : 0.055;
    painter.fillPath(continuousRoundedRect(rect(), radius), m_isRecording
                                                                ? theme.color(ThemeColor::focus, 0.1)
                                                                : theme.color(ThemeColor::label, strength));
    const bool isKey = m_isRecording ? !m_held.isEmpty() : m_key.has_value();
    painter.setFont(textFont(TextRole::body));
    painter.setPen(theme.color(current == ControlState::disabled ? ThemeColor::tertiaryLabel
                               : isKey                           ? ThemeColor::label
                                                                 : ThemeColor::secondaryLabel));
    drawTextOnBaseline(painter, QRectF(rect()).adjusted(padding, 0, -padding, 0), Qt::AlignHCenter, text());
    if (m_isRecording || showsFocusRing()) {
        paintFocusRing(painter, rect(), radius, theme);
    }
}

} // namespace brevlin
