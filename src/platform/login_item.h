#pragma once

#include "core/expected.h"

#include <functional>
#include <string>

namespace brevlin {

/// The program's own entry among what the desktop starts at login.
class LoginItem
{
public:
    enum class Status { notRegistered, enabled, requiresApproval, notFound };

    virtual ~LoginItem() = default;

    /// Read afresh at every call.
    virtual Status status() const = 0;
    /// Told on the main thread, at once or later; the error is the system's description.
    using Completion = std::function<void(const Expected<void, std::string>&)>;
    virtual void registerItem(Completion completion) = 0;
    virtual void unregisterItem(Completion completion) = 0;
    /// Opens the page of the desktop's settings where the user manages such entries.
    virtual void openSettings() = 0;
    /// Called on the main thread when the status may have changed from outside.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
