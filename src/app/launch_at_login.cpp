#include "app/launch_at_login.h"

#include "app/app_messages.h"

#include <QPointer>

#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText launchAtLoginFailed{"登录启动设置失败", "Launch at login failed"};
constexpr BilingualText entryWithoutEffect{"登录启动项已写入，但系统没有采用。",
                                           "The entry was written, but the desktop does not take it."};

} // namespace

LaunchAtLogin::LaunchAtLogin(std::unique_ptr<LaunchAtLoginService> service, AppMessages& messages)
    : m_service(std::move(service)), m_messages(messages), m_status(m_service->status())
{
    m_service->setChangeHandler([this] { refresh(); });
}

LaunchAtLogin::~LaunchAtLogin()
{
    m_service->setChangeHandler({});
}

void LaunchAtLogin::refresh()
{
    const LaunchAtLoginStatus status = m_service->status();
    if (std::exchange(m_status, status) != status) {
        Q_EMIT launchAtLoginStatusChanged();
    }
}

void LaunchAtLogin::setLaunchAtLogin(bool enabled)
{
    m_service->setEnabled(enabled, [self = QPointer(this), enabled](const auto& status) {
        if (self) {
            self->finish(enabled, status);
        }
    });
}

void LaunchAtLogin::finish(bool enabled,
                           const Expected<LaunchAtLoginStatus, LaunchAtLoginServiceError>& status)
{
    const LaunchAtLoginStatus result = status ? *status : m_status;
    const bool hasEffect =
        result == LaunchAtLoginStatus::enabled || result == LaunchAtLoginStatus::requiresApproval;
    if (!status) {
        m_messages.raise(launchAtLoginFailed, status.error().errorDescription());
    } else if (enabled && !hasEffect) {
        m_messages.raise(launchAtLoginFailed, std::string{entryWithoutEffect.in(m_messages.language())});
    }
    // Also where nothing has changed: the switch shows the wish until now.
    m_status = result;
    Q_EMIT launchAtLoginStatusChanged();
}

void LaunchAtLogin::openLoginItemSettings()
{
    m_service->openSettings();
}

} // namespace brevlin
