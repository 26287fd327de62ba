#include "ui/controls/alert_dialog.h"

#include "ui/controls/popup_frame.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

namespace brevlin {

namespace {

constexpr int dialogWidth = 380;
constexpr int padding = 24;
constexpr int buttonWidth = 96;
constexpr double cornerRadius = 12;

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
    // Without the window manager's frame, which would say the title a second time.
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_column(new QVBoxLayout(this))
    , m_title(makeLabel(textFont(TextRole::headline, QFont::DemiBold), this))
    , m_detail(makeLabel(textFont(TextRole::body), this))
    , m_buttons(new QHBoxLayout)
    , m_contentWidth(dialogWidth)
{
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_hasShadow = isComposited(*this);
    setAttribute(Qt::WA_TranslucentBackground, m_hasShadow);
    const int margin = m_hasShadow ? popupShadowMargin : 0;
    setContentsMargins(margin, margin, margin, margin);
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
    m_detail->setVisible(!detail.isEmpty());
}

void AlertDialog::setContent(QWidget* content)
{
    constexpr int behindDetail = 2;
    m_column->insertWidget(behindDetail, content);
    m_contents.push_back(content);
    content->show(); // a layout would show it later, when the height is reckoned
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
    for (const QWidget* content : m_contents) {
        if (content->layout() != nullptr) {
            content->layout()->activate(); // parts of it may have come or gone just now
        }
    }
    const QMargins margins = contentsMargins();
    setFixedWidth(m_contentWidth + margins.left() + margins.right());
    setFixedHeight(m_column->totalHeightForWidth(width()));
    if (const QWidget* window = parentWidget(); window != nullptr && !isVisible()) {
        move(window->mapToGlobal(window->rect().center()) - rect().center());
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
            [this, button] {
                if (focusWidget() == button) { // else the user was faster
                    button->clearFocus();
                    button->setFocus(Qt::TabFocusReason);
                }
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
    QPainter painter(this);
    if (m_hasShadow) {
        paintPopup(painter, contentsRect(), cornerRadius, PopupShadow::soft, Theme::of(*this));
    } else {
        paintMaskedPopup(painter, rect(), cornerRadius, Theme::of(*this));
    }
}

void AlertDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (!m_hasShadow) {
        setMask(popupMask(rect(), cornerRadius));
    }
}

// There is no title bar to move it by.
void AlertDialog::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && windowHandle() != nullptr) {
        windowHandle()->startSystemMove();
    }
}

} // namespace brevlin
