#include "platform/freedesktop/hooks/hook_process.h"

#include "platform/freedesktop/files/file_descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace brevlin {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// How soon a hurry, or an end that the kernel does not tell of, is noticed.
constexpr milliseconds longestLook{100};

std::string systemsWords(int code)
{
    return std::generic_category().message(code);
}

/// Holds all of the text, so that nobody waits for a program that does not read.
FileDescriptor memoryFile(const std::string& text)
{
    FileDescriptor file{::memfd_create("brevlin-hook", MFD_CLOEXEC)};
    std::size_t written = 0;
    while (file.isOpen() && written < text.size()) {
        const ssize_t size = ::write(file.get(), text.data() + written, text.size() - written);
        if (size <= 0) {
            return {};
        }
        written += static_cast<std::size_t>(size);
    }
    if (file.isOpen()) {
        ::lseek(file.get(), 0, SEEK_SET);
    }
    return file;
}

std::vector<std::string> environmentWith(const std::vector<std::pair<std::string, std::string>>& variables)
{
    std::vector<std::string> result;
    for (char** each = environ; *each != nullptr; ++each) {
        result.emplace_back(*each);
    }
    for (const auto& [name, value] : variables) {
        // What stands before the end of a text is all that an environment can hold of it.
        result.push_back(name + "=" + value.substr(0, value.find('\0')));
    }
    return result;
}

/// One run, from the start of the program to its end.
class Run final
{
public:
    Run(const HookLimits& limits, const std::atomic<bool>& isHurried)
        : m_limits(limits), m_isHurried(isHurried)
    {}
    ~Run()
    {
        if (m_process > 0) {
            ::kill(-m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
        }
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    HookResult run(const std::string& program, const HookCall& call)
    {
        if (const int error = start(program, call); error != 0) {
            return {{}, call.event, HookResult::Kind::notStarted, 0, systemsWords(error)};
        }
        watch();
        HookResult result;
        result.event = call.event;
        result.kind = m_isTooLong                                         ? HookResult::Kind::tookTooLong
                      : WIFEXITED(m_status) && WEXITSTATUS(m_status) == 0 ? HookResult::Kind::done
                                                                          : HookResult::Kind::failed;
        constexpr int bySignal = 128;
        result.code = WIFEXITED(m_status) ? WEXITSTATUS(m_status) : bySignal + WTERMSIG(m_status);
        result.output = std::move(m_kept);
        return result;
    }

private:
    /// Gives errno.
    int start(const std::string& program, const HookCall& call)
    {
        const FileDescriptor input = memoryFile(call.input);
        std::array<int, 2> pipe{};
        if (!input.isOpen() || ::pipe2(pipe.data(), O_CLOEXEC) != 0) {
            return errno;
        }
        m_output = FileDescriptor(pipe[0]);
        const FileDescriptor writing(pipe[1]);
        ::fcntl(m_output.get(), F_SETFL, O_NONBLOCK);

        posix_spawn_file_actions_t actions;
        posix_spawnattr_t attributes;
        sigset_t signals;
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        posix_spawn_file_actions_adddup2(&actions, input.get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, writing.get(), STDERR_FILENO);
        if (const char* home = std::getenv("HOME"); home != nullptr && ::access(home, X_OK) == 0) {
            posix_spawn_file_actions_addchdir_np(&actions, home);
        }
        posix_spawnattr_setflags(&attributes,
                                 POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigfillset(&signals); // what Brevlin ignores is none of the program's business
        posix_spawnattr_setsigdefault(&attributes, &signals);

        std::vector<std::string> environment = environmentWith(call.variables);
        std::vector<char*> assignments;
        assignments.reserve(environment.size() + 1);
        for (std::string& each : environment) {
            assignments.push_back(each.data());
        }
        assignments.push_back(nullptr);
        std::string name = program;
        const std::array<char*, 2> arguments{name.data(), nullptr};
        const int error = ::posix_spawn(&m_process, program.c_str(), &actions, &attributes, arguments.data(),
                                        assignments.data());
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) {
            m_process = -1;
            return error;
        }
        // https://man7.org/linux/man-pages/man2/pidfd_open.2.html
        m_end = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, m_process, 0)));
        m_deadline = Clock::now() + m_limits.longestRun;
        return 0;
    }

    void watch()
    {
        while (!hasEnded()) {
            const Clock::time_point now = Clock::now();
            if (m_isHurried && !m_wasHurried) {
                m_wasHurried = true;
                m_deadline = std::min(m_deadline, now + m_limits.whenHurried);
            }
            if (now >= m_deadline) {
                ::kill(-m_process, m_isTooLong ? SIGKILL : SIGTERM);
                m_isTooLong = true;
                m_deadline = now + (m_isHurried ? milliseconds{100} : m_limits.grace);
            }
            const auto left = std::chrono::duration_cast<milliseconds>(m_deadline - now) + milliseconds{1};
            std::array<pollfd, 2> both{pollfd{m_output.get(), POLLIN, 0}, pollfd{m_end.get(), POLLIN, 0}};
            ::poll(both.data(), both.size(), static_cast<int>(std::min(left, longestLook).count()));
            read();
        }
        read(); // what its last moment brought; children that hold the pipe open are not waited for
    }

    bool hasEnded()
    {
        siginfo_t ended{};
        // Not waited for yet, so that the number of its group is nobody else's.
        if (::waitid(P_PID, static_cast<id_t>(m_process), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            ended.si_pid == 0) {
            return false;
        }
        if (m_isTooLong) {
            ::kill(-m_process, SIGKILL); // whoever of its group did not heed the request
        }
        ::waitpid(m_process, &m_status, 0);
        m_process = -1;
        return true;
    }

    // No more at once than a pipe holds, so that one who writes without an end is still looked after.
    void read()
    {
        constexpr int mostPieces = 16;
        std::array<char, 4096> piece{};
        for (int count = 0; m_output.isOpen() && count < mostPieces; ++count) {
            const ssize_t size = ::read(m_output.get(), piece.data(), piece.size());
            if (size < 0) {
                break; // nothing yet
            }
            if (size == 0) {
                m_output = FileDescriptor();
                break;
            }
            m_kept.append(piece.data(), static_cast<std::size_t>(size));
            if (m_kept.size() > 2 * m_limits.keptOutput) {
                keepTheEnd();
            }
        }
        keepTheEnd();
    }

    void keepTheEnd()
    {
        if (m_kept.size() > m_limits.keptOutput) {
            m_kept.erase(0, m_kept.size() - m_limits.keptOutput);
        }
    }

    const HookLimits& m_limits;
    const std::atomic<bool>& m_isHurried;
    pid_t m_process = -1;
    int m_status = 0;
    FileDescriptor m_output;
    FileDescriptor m_end; // readable once the process has ended; may be closed where the kernel is old
    Clock::time_point m_deadline;
    bool m_isTooLong = false;
    bool m_wasHurried = false;
    std::string m_kept;
};

} // namespace

HookResult runHook(const std::string& program, const HookCall& call, const HookLimits& limits,
                   const std::atomic<bool>& isHurried)
{
    return Run(limits, isHurried).run(program, call);
}

} // namespace brevlin
