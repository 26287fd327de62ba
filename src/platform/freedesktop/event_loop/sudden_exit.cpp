#include "platform/freedesktop/event_loop/sudden_exit.h"

#include <QString>
#include <QtGlobal>

#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace brevlin {

struct SuddenExit::State
{
    std::function<void()> lastWord; // empty once it is not wanted any more
    QtMessageHandler messages = nullptr;

    static State* current; // for the messages, whose handler has no argument of its own
    static void hear(QtMsgType type, const QMessageLogContext& context, const QString& message);
};

namespace {

// Where the session asks for it, Qt waits for the compositor to come back instead of leaving.
bool tellsOfLeaving(const QString& message)
{
    return message.startsWith(QLatin1String("The Wayland connection experienced a fatal error")) ||
           (message.startsWith(QLatin1String("The Wayland connection broke")) &&
            !qEnvironmentVariableIsSet("QT_WAYLAND_RECONNECT"));
}

} // namespace

SuddenExit::State* SuddenExit::State::current = nullptr;

void SuddenExit::State::hear(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    current->messages(type, context, message);
    if (type == QtWarningMsg && tellsOfLeaving(message)) {
        if (const auto say = std::exchange(current->lastWord, {})) {
            say();
        }
    }
}

SuddenExit::SuddenExit(std::function<void()> lastWord) : m_state(new State{std::move(lastWord)})
{
    State::current = m_state;
    m_state->messages = qInstallMessageHandler(&State::hear);
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
    qInstallMessageHandler(m_state->messages);
}

} // namespace brevlin
