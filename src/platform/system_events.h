#pragma once

#include <functional>

namespace brevlin {

/// What happens to the computer and to the program's place on the desktop.
class SystemEvents
{
public:
    struct Observer
    {
        std::function<void()> willSleep;
        std::function<void()> didWake;
        std::function<void()> didBecomeActive;   ///< one of the program's windows got the keyboard
        std::function<void()> clockDidChange;    ///< the system's time was set
        std::function<void()> timeZoneDidChange; ///< the system's time zone may be another one
    };

    virtual ~SystemEvents() = default;

    /// Calls the observer's functions on the main thread from now on; replaces the previous observer.
    virtual void setObserver(Observer observer) = 0;
};

} // namespace brevlin
