#pragma once

#include "app/app_messages.h"
#include "core/language.h"
#include "ui/controls/alert_dialog.h"

namespace brevlin {

/// Tells the user of a failure, in front of the window that it belongs to, until the one button is pressed.
class MessageDialog final : public AlertDialog
{
    Q_OBJECT

public:
    MessageDialog(const AppMessage& message, AppLanguage language, QWidget* parent);

    const Uuid& messageID() const { return m_messageID; }

private:
    Uuid m_messageID;
};

} // namespace brevlin
