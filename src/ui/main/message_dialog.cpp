#include "ui/main/message_dialog.h"

#include "ui/style/capsule_button.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QLabel>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int dialogWidth = 380;
constexpr int padding = 24;

QLabel* makeLabel(const std::string& text, const QFont& font, QWidget* parent)
{
    auto* label = new QLabel(qtText(text), parent);
    label->setTextFormat(Qt::PlainText); // a file name is no markup
    label->setFont(font);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFocusPolicy(Qt::NoFocus);
    return label;
}

} // namespace

MessageDialog::MessageDialog(const AppMessage& message, AppLanguage language, QWidget* parent)
    : QDialog(parent), m_messageID(message.id)
{
    setWindowModality(Qt::WindowModal);
    setWindowTitle(qtText(message.title));
    setAttribute(Qt::WA_DeleteOnClose);

    auto* button = new CapsuleButton(CapsuleStyle::primary, ControlSize::regular, this);
    button->setText(language == AppLanguage::english ? QStringLiteral("OK") : QStringLiteral("好"));
    button->setTint(ThemeColor::focus);
    button->setMinimumWidth(96);
    connect(button, &QAbstractButton::clicked, this, &QDialog::accept);
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QDialog::accept);
    }

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(8);
    column->addWidget(makeLabel(message.title, textFont(TextRole::headline, QFont::DemiBold), this));
    column->addWidget(makeLabel(message.detail, textFont(TextRole::body), this));
    column->addSpacing(12);
    column->addWidget(button, 0, Qt::AlignRight);
    setFixedWidth(dialogWidth);
    setFixedHeight(column->totalHeightForWidth(dialogWidth));
    button->setFocus();
    if (parent != nullptr) {
        move(parent->mapToGlobal(parent->rect().center()) - QPoint(dialogWidth / 2, height() / 2));
    }
}

void MessageDialog::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::of(*this).color(ThemeColor::panelBackground));
}

} // namespace brevlin
