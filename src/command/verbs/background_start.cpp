#include "command/verbs/background_start.h"

#include "platform/freedesktop/files/program_files.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace brevlin {

namespace {

using namespace std::chrono_literals;

constexpr auto longestStart = 15s;
constexpr auto interval = 20ms; // from one look to the next

// Without them a program that is started over ssh would find no display.
void completeEnvironment(BusLink* bus)
{
    if (bus == nullptr || std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr) {
        return;
    }
    for (const char* name :
         {"DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP"}) {
        if (const std::string value = bus->sessionVariable(name); !value.empty()) {
            ::setenv(name, value.c_str(), 0);
        }
    }
}

pid_t spawnProgram()
{
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    }
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    std::string program = programFile("brevlin-window");
    std::string name = "brevlin";
    std::string option = backgroundOption;
    const std::array<char*, 3> arguments{name.data(), option.data(), nullptr};
    pid_t process = -1;
    if (posix_spawn(&process, program.c_str(), &actions, &attributes, arguments.data(), environ) != 0) {
        process = -1;
    }
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

} // namespace

std::optional<ControlAnswer> askStarted(SessionLinks& links, const ControlRequest& request)
{
    BusLink* bus = links.bus();
    pid_t process = 0;
    if (bus == nullptr || !bus->startProgram()) {
        completeEnvironment(bus);
        process = spawnProgram();
    }
    const auto deadline = std::chrono::steady_clock::now() + longestStart;
    while (process >= 0 && std::chrono::steady_clock::now() < deadline) {
        if (auto answer = links.ask(request)) {
            return answer;
        }
        if (process > 0 && ::waitpid(process, nullptr, WNOHANG) == process) {
            break; // it has ended
        }
        std::this_thread::sleep_for(interval);
    }
    return std::nullopt;
}

} // namespace brevlin
