#include "platform/freedesktop/event_loop/sudden_exit.h"

#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace brevlin {

struct SuddenExit::State
{
    std::function<void()> lastWord; // empty once it is not wanted any more
};

SuddenExit::SuddenExit(std::function<void()> lastWord) : m_state(new State{std::move(lastWord)})
{
    const auto end = [](int code, void* argument) {
        const std::unique_ptr<State> state(static_cast<State*>(argument));
        if (const auto say = std::exchange(state->lastWord, {})) {
            say();
            _exit(code);
        }
    };
    on_exit(end, m_state); // on_exit(3), which unlike atexit gives the code
}

SuddenExit::~SuddenExit()
{
    m_state->lastWord = {};
}

} // namespace brevlin
