#include "ui/main/message_dialog.h"

#include "ui/style/text.h"

namespace brevlin {

MessageDialog::MessageDialog(const AppMessage& message, AppLanguage language, QWidget* parent)
    : AlertDialog(parent), m_messageID(message.id)
{
    setTitle(qtText(message.title));
    setDetail(qtText(message.detail));
    CapsuleButton* button = addButton(CapsuleStyle::primary);
    button->setText(language == AppLanguage::english ? QStringLiteral("OK") : QStringLiteral("好"));
    button->setTint(ThemeColor::focus);
    connect(button, &QAbstractButton::clicked, this, &QDialog::accept);
    fit();
    button->setFocus();
}

} // namespace brevlin
