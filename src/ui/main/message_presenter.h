#pragma once

#include "core/uuid.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <set>
#include <string>
#include <vector>

class QWidget;

namespace brevlin {

class AppMessages;
class MessageDialog;

/// Tells the user what there is to tell, one message after the other, in front of the window that he
/// works in. While none is open a notification tells of it, and the window as soon as one opens.
class MessagePresenter final : public QObject
{
    Q_OBJECT

public:
    MessagePresenter(AppMessages& messages,
                     std::function<void(const std::string& title, const std::string& text)> notify,
                     QObject* parent = nullptr);

    /// One in front of which messages may be shown: the active one, else the first that is open.
    void addWindow(QWidget* window);

    /// From now on: before the first window had its chance to open, nothing counts as closed.
    void start();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void present();
    void notifyOfNewMessages();
    QWidget* frontWindow() const;

    AppMessages& m_messages;
    std::vector<QPointer<QWidget>> m_windows;
    std::function<void(const std::string&, const std::string&)> m_notify;
    QPointer<MessageDialog> m_dialog;
    std::set<Uuid> m_notified;
    bool m_isStarted = false;
};

} // namespace brevlin
