#include "services/launch_at_login_service.h"

namespace brevlin {

std::string LaunchAtLoginServiceError::errorDescription() const
{
    const std::string verb = operation == Operation::enable ? "开启" : "关闭";
    return "无法" + verb + "登录时启动：" + underlyingDescription;
}

LaunchAtLoginService::LaunchAtLoginService(LoginItem& item)
    : m_item(item), m_self(std::make_shared<LaunchAtLoginService*>(this))
{}

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

void LaunchAtLoginService::setEnabled(bool enabled, Completion completion)
{
    using Status = LoginItem::Status;
    const Status before = m_item.status();
    const bool needsChange = enabled ? before == Status::notRegistered || before == Status::notFound
                                     : before != Status::notRegistered;
    auto finish = [self = std::weak_ptr(m_self), enabled,
                   completion = std::move(completion)](const Expected<void, std::string>& changed) {
        const auto service = self.lock();
        if (!service) {
            return;
        }
        if (changed) {
            (*service)->m_lastError.reset();
            completion((*service)->status());
            return;
        }
        using Operation = LaunchAtLoginServiceError::Operation;
        (*service)->m_lastError =
            LaunchAtLoginServiceError{enabled ? Operation::enable : Operation::disable, changed.error()};
        completion(Unexpected{*(*service)->m_lastError});
    };
    if (!needsChange) {
        finish({});
    } else if (enabled) {
        m_item.registerItem(std::move(finish));
    } else {
        m_item.unregisterItem(std::move(finish));
    }
}

} // namespace brevlin
