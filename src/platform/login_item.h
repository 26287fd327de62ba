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
    /// The error is the system's description.
    virtual Expected<void, std::string> registerItem() = 0;
    virtual Expected<void, std::string> unregisterItem() = 0;
    /// Opens the page of the desktop's settings where the user manages such entries.
    virtual void openSettings() = 0;
    /// Called on the main thread when the status may have changed from outside.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
