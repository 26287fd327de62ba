#pragma once

#include "core/expected.h"
#include "platform/login_item.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace brevlin {

enum class LaunchAtLoginStatus { disabled, enabled, requiresApproval, unavailable };

/// A change of the login item that failed.
struct LaunchAtLoginServiceError
{
    enum class Operation { enable, disable };

    Operation operation = Operation::enable;
    std::string underlyingDescription;

    bool operator==(const LaunchAtLoginServiceError&) const = default;

    /// The text for the user; Chinese whatever the language.
    std::string errorDescription() const;
};

/// Brings the program's login item in line with the user's wish.
class LaunchAtLoginService final
{
public:
    explicit LaunchAtLoginService(LoginItem& item);

    /// Read afresh at every call.
    LaunchAtLoginStatus status() const;
    /// Tells the status read after the change: registering may leave the item waiting for approval.
    using Completion = std::function<void(const Expected<LaunchAtLoginStatus, LaunchAtLoginServiceError>&)>;
    void setEnabled(bool enabled, Completion completion);
    /// The failure of the latest setEnabled().
    const std::optional<LaunchAtLoginServiceError>& lastError() const { return m_lastError; }
    void openSettings() { m_item.openSettings(); }
    /// Called when the status may have changed from outside, for example in the desktop's own settings.
    void setChangeHandler(std::function<void()> handler) { m_item.setChangeHandler(std::move(handler)); }

private:
    LoginItem& m_item;
    std::shared_ptr<LaunchAtLoginService*> m_self; // seen by completions as long as this lives
    std::optional<LaunchAtLoginServiceError> m_lastError;
};

} // namespace brevlin
