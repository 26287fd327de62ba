#include "services/launch_at_login_service.h"

namespace brevlin {

std::string LaunchAtLoginServiceError::errorDescription() const
{
    const std::string verb = operation == Operation::enable ? "开启" : "关闭";
    return "无法" + verb + "登录时启动：" + underlyingDescription;
}

LaunchAtLoginService::LaunchAtLoginService(LoginItem& item) : m_item(item) {}

LaunchAtLoginStatus LaunchAtLoginService::status() const
{
    switch (m_item.status()) {
    case LoginItem::Status::notRegistered:
        return LaunchAtLoginStatus::disabled;
    case LoginItem::Status::enabled:
        return LaunchAtLoginStatus::enabled;
    case LoginItem::Status::requiresApproval:
        return LaunchAtLoginStatus::requiresApproval;
    case LoginItem::Status::notFound:
        break;
    }
    return LaunchAtLoginStatus::unavailable;
}

Expected<LaunchAtLoginStatus, LaunchAtLoginServiceError> LaunchAtLoginService::setEnabled(bool enabled)
{
    using Status = LoginItem::Status;
    const Status before = m_item.status();
    const bool needsChange = enabled ? before == Status::notRegistered || before == Status::notFound
                                     : before != Status::notRegistered;
    if (needsChange) {
        const auto changed = enabled ? m_item.registerItem() : m_item.unregisterItem();
        if (!changed) {
            using Operation = LaunchAtLoginServiceError::Operation;
            m_lastError =
                LaunchAtLoginServiceError{enabled ? Operation::enable : Operation::disable, changed.error()};
            return Unexpected{*m_lastError};
        }
    }
    m_lastError.reset();
    return status();
}

} // namespace brevlin
