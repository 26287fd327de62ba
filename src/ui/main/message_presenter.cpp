#include "ui/main/message_presenter.h"

#include "app/app_messages.h"
#include "ui/main/message_dialog.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace brevlin {

MessagePresenter::MessagePresenter(AppMessages& messages,
                                   std::function<void(const std::string&, const std::string&)> notify,
                                   QObject* parent)
    : QObject(parent), m_messages(messages), m_notify(std::move(notify))
{
    connect(&messages, &AppMessages::appMessageChanged, this, &MessagePresenter::present);
}

void MessagePresenter::addWindow(QWidget* window)
{
    m_windows.emplace_back(window);
    window->installEventFilter(this);
}

void MessagePresenter::start()
{
    if (!std::exchange(m_isStarted, true)) {
        present();
    }
}

bool MessagePresenter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        // Once the window stands and has the keyboard, so that the alert takes it from there.
        QMetaObject::invokeMethod(this, &MessagePresenter::present, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void MessagePresenter::present()
{
    const auto message = m_messages.appMessage();
    if (m_dialog && (!message || message->id != m_dialog->messageID())) {
        // Without clearing the message: another one takes its place.
        disconnect(m_dialog, &QDialog::finished, nullptr, nullptr);
        m_dialog->close();
        m_dialog.clear();
    }
    if (!m_isStarted || !message || m_dialog) {
        return;
    }
    QWidget* window = frontWindow();
    if (window == nullptr) {
        notifyOfNewMessages();
        return;
    }
    m_dialog = new MessageDialog(*message, m_messages.language(), window);
    connect(m_dialog, &QDialog::finished, this, [this] {
        m_dialog.clear();
        m_messages.clearAppMessage();
    });
    m_dialog->show();
}

void MessagePresenter::notifyOfNewMessages()
{
    // All of them, because the next notification takes the place of this one.
    std::string text;
    bool isNew = false;
    for (const AppMessage& message : m_messages.appMessages()) {
        isNew = m_notified.insert(message.id).second || isNew;
        text += text.empty() ? message.detail : "\n" + message.title + "\n" + message.detail;
    }
    if (isNew) {
        m_notify(m_messages.appMessages().front().title, text);
    }
}

QWidget* MessagePresenter::frontWindow() const
{
    const auto isOpen = [](const QWidget* window) {
        return window != nullptr && window->isVisible() && !window->isMinimized();
    };
    const auto active = std::find(m_windows.begin(), m_windows.end(), QApplication::activeWindow());
    if (active != m_windows.end() && isOpen(*active)) {
        return *active;
    }
    const auto open = std::find_if(m_windows.begin(), m_windows.end(), isOpen);
    return open == m_windows.end() ? nullptr : *open;
}

} // namespace brevlin
