#pragma once

#include "services/launch_at_login_service.h"

#include <QObject>

#include <memory>

namespace brevlin {

class AppMessages;

/// Whether the desktop starts the program at login, as it was last heard, and the user's wish for it.
class LaunchAtLogin final : public QObject
{
    Q_OBJECT

public:
    LaunchAtLogin(std::unique_ptr<LaunchAtLoginService> service, AppMessages& messages);
    ~LaunchAtLogin() override;

    LaunchAtLoginStatus launchAtLoginStatus() const { return m_status; }
    void setLaunchAtLogin(bool enabled);
    /// Shows the desktop's own list of what starts at login.
    void openLoginItemSettings();
    /// Looks again.
    void refresh();

Q_SIGNALS:
    void launchAtLoginStatusChanged();

private:
    void finish(bool enabled, const Expected<LaunchAtLoginStatus, LaunchAtLoginServiceError>& status);

    std::unique_ptr<LaunchAtLoginService> m_service;
    AppMessages& m_messages;
    LaunchAtLoginStatus m_status;
};

} // namespace brevlin
