#pragma once

#include <functional>

namespace brevlin {

/// Whether the user's session is locked: what floats above other windows must then not be seen.
class SessionLock
{
public:
    virtual ~SessionLock() = default;

    /// False until the desktop has said otherwise.
    virtual bool isLocked() const = 0;
    /// Called on the main thread after each change.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
