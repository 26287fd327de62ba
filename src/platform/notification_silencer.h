#pragma once

#include "core/instant.h"

#include <functional>
#include <optional>
#include <string>

namespace brevlin {

/// The desktop's switch that keeps every program's notifications from the screen. Each desktop has another
/// one; the present one belongs to the notification server that runs. Answers come later, on the main thread;
/// a desktop that hangs gives them when it goes on, or never.
class NotificationSilencer
{
public:
    /// How long it stays as it was turned.
    enum class Lasts {
        whileProgramRuns, ///< the desktop itself gives back what a program that is gone has silenced
        whileServerRuns,
        always,
    };
    struct Switch
    {
        std::string name; ///< the same in every run
        Lasts lasts = Lasts::always;

        bool operator==(const Switch&) const = default;
    };
    enum class Support {
        unknown, ///< nobody has looked, or the desktop has not answered
        none,    ///< there is no switch that a program could turn
        full,
    };
    enum class State {
        heard,
        silent,
        absent,  ///< there is no such switch now: nothing is silenced by it
        unknown, ///< the desktop did not tell
    };
    using Answer = std::function<void(State)>;
    using Completion = std::function<void(bool isDone)>;

    struct Observer
    {
        /// Another switch is the present one, or there is none any more, or it is a new server's.
        std::function<void()> switchChanged;
        /// Somebody else has turned the present switch; some desktops also tell when it stays what it was.
        /// Comes in order with the answers of the switch.
        std::function<void()> wasTurned;
    };

    virtual ~NotificationSilencer() = default;

    virtual void setObserver(Observer observer) = 0;
    /// Follows the desktop from now on; costs nothing before. Asks again where the desktop did not tell.
    virtual void look() = 0;
    virtual Support support() const = 0;
    /// Nothing unless support() is full.
    virtual const std::optional<Switch>& current() const = 0;

    // Any switch, present or not, by its name.
    virtual void readState(const std::string& name, Answer answer) = 0;
    virtual void silence(const std::string& name, Completion completion) = 0;
    virtual void giveBack(const std::string& name, Completion completion) = 0;
    /// For the end of the program, which allows no later step: waits, no longer than this, and says whether
    /// it is done.
    virtual bool giveBackNow(const std::string& name, Seconds longest) = 0;
};

} // namespace brevlin
