#pragma once

#include <functional>

namespace brevlin {

/// The last word when a library ends the process by exit(3) in the middle of its work, as Qt and Xlib do when
/// the display's server is gone. The process then ends at once with the code that was given to exit: what
/// else stands there for its end would meet objects that are still in use. Where a Wayland compositor is gone
/// Qt leaves by _exit(2), of which nobody hears, and says so in a warning before: that counts as well.
/// One at a time.
class SuddenExit final
{
public:
    /// `lastWord` is called on the thread that calls exit; it must not leave anything to an event loop.
    explicit SuddenExit(std::function<void()> lastWord);
    /// From now on exit(3) is the usual one.
    ~SuddenExit();
    SuddenExit(const SuddenExit&) = delete;
    SuddenExit& operator=(const SuddenExit&) = delete;

private:
    struct State;

    State* m_state; // also the C library's, which keeps it until the process ends
};

} // namespace brevlin
