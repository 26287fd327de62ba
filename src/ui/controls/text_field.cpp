#include "ui/controls/text_field.h"

#include "core/language.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

namespace brevlin {

namespace {

constexpr int fieldHeight = 28;
constexpr int usualWidth = 180;
constexpr int padding = 9;
constexpr double fieldRadius = 7;

} // namespace

TextField::MenuTexts TextField::menuTexts(bool english)
{
    const auto text = [english](const char* chinese, const char* other) {
        return qtText(english ? other : chinese);
    };
    return {text("撤销", "Undo"), text("重做", "Redo"),  text("剪切", "Cut"),
            text("复制", "Copy"), text("粘贴", "Paste"), text("全选", "Select All")};
}

TextField::TextField(Look look, QWidget* parent)
    : QLineEdit(parent), m_look(look), m_menuTexts(menuTexts(true))
{
    setFrame(false);
    setFont(textFont(TextRole::body));
    setTextMargins(padding, 0, padding, 0);
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    // The program's own font has no more than the program's own characters.
    connect(this, &QLineEdit::textChanged, this, [](const QString& text) { qtText(text.toStdString()); });
    applyTheme();
}

QSize TextField::sizeHint() const
{
    return {usualWidth, fieldHeight};
}

QSize TextField::minimumSizeHint() const
{
    return {usualWidth / 2, fieldHeight};
}

void TextField::applyTheme()
{
    // The ground is painted here, so that the editor stays clear.
    const Theme theme = Theme::of(*this);
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    clear.setColor(QPalette::Text, theme.color(ThemeColor::label));
    clear.setColor(QPalette::PlaceholderText, theme.color(ThemeColor::secondaryLabel));
    if (clear != palette()) {
        setPalette(clear);
    }
}

bool TextField::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && m_takesEscape &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void TextField::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        applyTheme();
    }
}

void TextField::enterEvent(QEnterEvent* event)
{
    QLineEdit::enterEvent(event);
    update();
}

void TextField::leaveEvent(QEvent* event)
{
    QLineEdit::leaveEvent(event);
    update();
}

void TextField::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusGained(*event);
    // Qt would choose all and move the cursor now, and tell of it before it tells of the focus; a screen
    // reader then takes the field for known and says nothing of it.
    QFocusEvent quietly(event->type(), Qt::OtherFocusReason);
    QLineEdit::focusInEvent(&quietly);
    const bool isByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (isByKey && !text().isEmpty()) {
        QMetaObject::invokeMethod(this, &QLineEdit::selectAll, Qt::QueuedConnection);
    }
    update();
}

void TextField::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusLost(*event);
    m_isComposing = false;
    QLineEdit::focusOutEvent(event);
    update();
}

void TextField::inputMethodEvent(QInputMethodEvent* event)
{
    m_isComposing = !event->preeditString().isEmpty();
    qtText(event->preeditString().toStdString());
    QLineEdit::inputMethodEvent(event);
}

void TextField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_takesEscape && !m_isComposing) {
        Q_EMIT escapePressed();
        return;
    }
    const bool endsComposition = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (m_isComposing && endsComposition) {
        return; // is the input method's
    }
    QLineEdit::keyPressEvent(event);
}

void TextField::contextMenuEvent(QContextMenuEvent* event)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& text, bool isEnabled, auto action) {
        QAction* entry = menu->addAction(text, this, action);
        entry->setEnabled(isEnabled);
    };
    add(m_menuTexts.undo, isUndoAvailable(), &QLineEdit::undo);
    add(m_menuTexts.redo, isRedoAvailable(), &QLineEdit::redo);
    menu->addSeparator();
    add(m_menuTexts.cut, hasSelectedText(), &QLineEdit::cut);
    add(m_menuTexts.copy, hasSelectedText(), &QLineEdit::copy);
    add(m_menuTexts.paste, !QGuiApplication::clipboard()->text().isEmpty(), &QLineEdit::paste);
    menu->addSeparator();
    add(m_menuTexts.selectAll, !text().isEmpty(), &QLineEdit::selectAll);
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    menu->popup(isByMouse ? event->globalPos() : mapToGlobal(rect().bottomLeft()));
}

void TextField::paintEvent(QPaintEvent* event)
{
    const Theme theme = Theme::of(*this);
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isQuiet = m_look == Look::quiet;
        const double strength = !isEnabled()   ? 0.03
                                : hasFocus()   ? (isQuiet ? 0.055 : 0.09)
                                : underMouse() ? (isQuiet ? 0.04 : 0.085)
                                : isQuiet      ? 0.0
                                               : 0.055;
        painter.fillPath(continuousRoundedRect(rect(), fieldRadius),
                         theme.color(ThemeColor::label, strength));
        if (m_keyboardFocus.isShown()) {
            paintFocusRing(painter, rect(), fieldRadius, theme);
        } else if (hasFocus()) {
            paintHairlineInside(painter, rect(), fieldRadius, theme.color(ThemeColor::tertiaryLabel));
        }
        if (!hasFocus()) {
            // At rest a text that is too long ends in an ellipsis.
            const QRectF place = QRectF(rect()).adjusted(padding + 2, 0, -padding - 2, 0);
            const bool isEmpty = text().isEmpty();
            painter.setFont(font());
            painter.setPen(
                theme.color(isEmpty || !isEnabled() ? ThemeColor::secondaryLabel : ThemeColor::label));
            const QString shown = QFontMetricsF(font()).elidedText(isEmpty ? placeholderText() : text(),
                                                                   Qt::ElideRight, place.width());
            drawTextOnBaseline(painter, place, alignment() & Qt::AlignHorizontal_Mask, shown);
            return;
        }
    }
    QLineEdit::paintEvent(event);
}

} // namespace brevlin
