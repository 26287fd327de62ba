#include "command/verbs/status_follower.h"

#include "command/verbs/status_forms.h"
#include "exchange/status_json.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

Instant now()
{
    return instantFromUnixTime(std::chrono::system_clock::now().time_since_epoch());
}

constexpr int mostLooks = 50;
constexpr int lookInterval = 100; // milliseconds

AppLanguage languageOf(const ControlAnswer& answer)
{
    return answer.language == localeIdentifier(AppLanguage::simplifiedChinese)
               ? AppLanguage::simplifiedChinese
               : AppLanguage::english;
}

bool isStatus(const std::optional<ControlAnswer>& answer)
{
    return answer && answer->kind == ControlAnswer::Kind::status;
}

/// One run of the command: what was heard last, and what was written of it.
class Follower final
{
public:
    Follower(SessionLinks& links, const StatusCommand& command, AppLanguage language)
        : m_links(links), m_command(command), m_language(language)
    {}

    ExitStatus run()
    {
        if (BusLink* bus = m_links.bus()) {
            bus->watch();
        }
        watchFolder();
        look();
        while (write()) {
            wait();
        }
        return outputFailed(m_language);
    }

private:
    // A socket that appears is the sign of a program that no bus tells of.
    void watchFolder()
    {
        m_folder = FileDescriptor(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        if (m_folder.isOpen() && !m_links.socketFolder().empty()) {
            ::inotify_add_watch(m_folder.get(), m_links.socketFolder().c_str(), IN_CREATE | IN_MOVED_TO);
        }
    }

    void look()
    {
        m_links.socket().forget();
        const ControlRequest request{std::string(controlWord::status), {}, {}};
        BusLink* bus = m_links.bus();
        m_answer = bus != nullptr ? bus->ask(request) : std::nullopt;
        if (!m_answer) {
            m_answer = m_links.socket().ask(request);
            awaitChange();
        }
    }

    void lookAgain()
    {
        if (m_looksLeft > 0) {
            --m_looksLeft;
            look();
            m_looksLeft = isStatus(m_answer) ? 0 : m_looksLeft;
        }
    }

    void awaitChange()
    {
        if (isStatus(m_answer) && !m_links.socket().await(m_answer->revision)) {
            m_answer.reset();
        }
    }

    /// False once nobody reads it.
    bool write()
    {
        std::string line = statusText(m_command, m_answer, m_language);
        if (line == m_line) {
            return true;
        }
        m_line = std::move(line);
        return writeOut(m_line);
    }

    // A socket is there a moment before it is listened to. What passes by itself is reckoned, not asked for.
    int untilNextLook() const
    {
        if (m_looksLeft > 0) {
            return lookInterval;
        }
        const auto status = m_command.isEverySecond && isStatus(m_answer) ? statusFromJson(m_answer->text)
                                                                          : Unexpected{DocumentError{}};
        if (!status || !status->endsAt) {
            return -1;
        }
        const double left = (*status->endsAt - now()).count();
        constexpr double milliseconds = 1000.0;
        return left > 0.0 ? static_cast<int>(std::ceil(std::fmod(left, 1.0) * milliseconds)) + 1 : -1;
    }

    void wait()
    {
        BusLink* bus = m_links.bus();
        const int busDescriptor = bus != nullptr ? bus->descriptor() : -1;
        // Nothing is awaited of standard output but its end.
        std::array<pollfd, 4> all{pollfd{STDOUT_FILENO, 0, 0}, pollfd{busDescriptor, POLLIN, 0},
                                  pollfd{m_links.socket().descriptor(), POLLIN, 0},
                                  pollfd{isStatus(m_answer) ? -1 : m_folder.get(), POLLIN, 0}};
        if (::poll(all.data(), all.size(), untilNextLook()) <= 0) {
            lookAgain();
            return;
        }
        if (all[0].revents != 0) {
            ::_exit(static_cast<int>(ExitStatus::done)); // the reader is gone
        }
        if (all[1].revents != 0 && bus->news()) {
            look();
        } else if (all[2].revents != 0) {
            m_answer = m_links.socket().awaited();
            awaitChange();
        } else if (all[3].revents != 0) {
            std::array<char, 4096> events{};
            while (::read(m_folder.get(), events.data(), events.size()) > 0) {
            }
            m_looksLeft = mostLooks;
            lookAgain();
        }
    }

    SessionLinks& m_links;
    const StatusCommand m_command;
    const AppLanguage m_language;
    FileDescriptor m_folder;
    std::optional<ControlAnswer> m_answer;
    std::string m_line;
    int m_looksLeft = 0; // for a program that has just appeared
};

} // namespace

std::string statusText(const StatusCommand& command, const std::optional<ControlAnswer>& answer,
                       AppLanguage language)
{
    if (!isStatus(answer)) {
        return command.form == StatusForm::json ? absentStatusJson() + '\n'
                                                : statusLine(command.form, std::nullopt, language);
    }
    const auto told = statusFromJson(answer->text);
    if (!told) {
        return statusText(command, std::nullopt,
                          language); // of a later release, which is told apart by its version
    }
    const TimerStatus status = statusAt(*told, now());
    return command.form == StatusForm::json ? withRemaining(answer->text, status.remaining) + '\n'
                                            : statusLine(command.form, status, languageOf(*answer));
}

ExitStatus followStatus(SessionLinks& links, const StatusCommand& command, AppLanguage language)
{
    return Follower(links, command, language).run();
}

} // namespace brevlin
