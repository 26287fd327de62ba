#include "ui/controls/alert_dialog.h"

#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int dialogWidth = 380;
constexpr int padding = 24;
constexpr int buttonWidth = 96;

QLabel* makeLabel(const QFont& font, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText); // a file name is no markup
    label->setFont(font);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFocusPolicy(Qt::NoFocus);
    return label;
}

} // namespace

AlertDialog::AlertDialog(QWidget* parent)
    : QDialog(parent)
    , m_column(new QVBoxLayout(this))
    , m_title(makeLabel(textFont(TextRole::headline, QFont::DemiBold), this))
    , m_detail(makeLabel(textFont(TextRole::body), this))
    , m_buttons(new QHBoxLayout)
{
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_column->setContentsMargins(padding, padding, padding, padding);
    m_column->setSpacing(8);
    m_column->addWidget(m_title);
    m_column->addWidget(m_detail);
    m_column->addSpacing(12);
    m_column->addLayout(m_buttons);
    m_buttons->setSpacing(10);
    m_buttons->addStretch(1);
}

void AlertDialog::setTitle(const QString& title)
{
    setWindowTitle(title);
    m_title->setText(title);
}

void AlertDialog::setDetail(const QString& detail)
{
    m_detail->setText(detail);
}

CapsuleButton* AlertDialog::addButton(CapsuleStyle style)
{
    auto* button = new CapsuleButton(style, ControlSize::regular, this);
    button->setMinimumWidth(buttonWidth);
    m_buttons->addWidget(button);
    return button;
}

void AlertDialog::fit()
{
    setFixedWidth(dialogWidth);
    setFixedHeight(m_column->totalHeightForWidth(dialogWidth));
    if (const QWidget* window = parentWidget(); window != nullptr && !isVisible()) {
        move(window->mapToGlobal(window->rect().center()) - QPoint(dialogWidth / 2, height() / 2));
    }
}

bool AlertDialog::event(QEvent* event)
{
    const bool result = QDialog::event(event);
    // Shows from the start which button Return will press.
    if (event->type() == QEvent::WindowActivate && focusWidget() != nullptr) {
        QWidget* button = focusWidget();
        QMetaObject::invokeMethod(
            button,
            [button] {
                button->clearFocus();
                button->setFocus(Qt::TabFocusReason);
            },
            Qt::QueuedConnection);
    }
    return result;
}

void AlertDialog::keyPressEvent(QKeyEvent* event)
{
    auto* button = qobject_cast<CapsuleButton*>(focusWidget());
    if (button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        button->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

void AlertDialog::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::of(*this).color(ThemeColor::panelBackground));
}

} // namespace brevlin
