#include "platform/freedesktop/event_loop/termination_signals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace brevlin {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may only write to a descriptor, and it can be told of it only here.
std::array<int, 2> wakeUpPipe{-1, -1};

void wakeUp(int /*signal*/)
{
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(wakeUpPipe[1], &byte, 1);
    errno = savedError;
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handledSignals) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent)
{
    if (pipe2(wakeUpPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals then end the program at once, which loses nothing
    }
    m_notifier = std::make_unique<QSocketNotifier>(wakeUpPipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        [[maybe_unused]] const ssize_t count = read(wakeUpPipe[0], bytes.data(), bytes.size());
        Q_EMIT received();
    });
    setHandler(wakeUp);
}

TerminationSignals::~TerminationSignals()
{
    if (m_notifier) {
        setHandler(SIG_DFL);
        m_notifier.reset();
        close(wakeUpPipe[0]);
        close(wakeUpPipe[1]);
    }
}

} // namespace brevlin
