#include "command/verbs/run_verb.h"

#include "command/line/output.h"
#include "command/line/usage.h"
#include "command/verbs/background_start.h"
#include "command/verbs/status_follower.h"
#include "command/verbs/verb_line.h"

#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

namespace brevlin {

namespace {

ControlRequest requestOf(const VerbCommand& command)
{
    ControlRequest request{std::string(rawValue(command.verb)), {}, {}};
    if (command.intention) {
        request.arguments = {*command.intention};
    }
    return request;
}

ControlRequest requestOf(const IntentionCommand& command)
{
    return {std::string(controlWord::intention), {command.intention}, {}};
}

ControlRequest requestOf(const ShowCommand& command)
{
    std::string token;
    for (const char* name : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
        if (const char* value = std::getenv(name); value != nullptr && token.empty()) {
            token = value;
        }
    }
    return {std::string(controlWord::show), {command.section}, token};
}

ControlRequest requestOf(const QuitCommand& /*command*/)
{
    return {std::string(controlWord::quit), {}, {}};
}

/// Whether the verb has sense where no program runs.
bool startsProgram(const VerbCommand& command)
{
    return command.verb == TimerVerb::start || command.verb == TimerVerb::toggle;
}
template <typename Other>
bool startsProgram(const Other& /*command*/)
{
    return false;
}

ExitStatus notRunning(AppLanguage language)
{
    constexpr BilingualText sentence{"Brevlin 未运行。", "Brevlin is not running."};
    complain(sentence.in(language));
    return ExitStatus::notRunning;
}

ExitStatus report(const ControlAnswer& answer, AppLanguage language)
{
    constexpr BilingualText silent{"Brevlin 没有响应。", "Brevlin does not answer."};
    switch (answer.kind) {
    case ControlAnswer::Kind::done:
    case ControlAnswer::Kind::status:
        return ExitStatus::done;
    case ControlAnswer::Kind::refused:
        complain(answer.text);
        break;
    case ControlAnswer::Kind::unknown:
        complain(silent.in(language), answer.text);
        break;
    }
    return ExitStatus::failed;
}

/// One of the commands that change something.
class Runner final
{
public:
    explicit Runner(AppLanguage language) : m_language(language) {}

    template <typename Request>
    ExitStatus operator()(const Request& command) const
    {
        SessionLinks links;
        const ControlRequest request = requestOf(command);
        auto answer = links.ask(request);
        if (!answer && startsProgram(command)) {
            answer = askStarted(links, request);
            if (!answer) {
                constexpr BilingualText failed{"无法启动 Brevlin。", "Brevlin could not be started."};
                complain(failed.in(m_language));
                return ExitStatus::failed;
            }
        }
        return answer ? report(*answer, m_language) : notRunning(m_language);
    }

    ExitStatus operator()(const StatusCommand& command) const
    {
        SessionLinks links;
        if (command.follows) {
            return followStatus(links, command, m_language);
        }
        const auto answer = links.ask({std::string(controlWord::status), {}, {}});
        if (!answer) {
            return notRunning(m_language);
        }
        if (answer->kind != ControlAnswer::Kind::status) {
            return report(*answer, m_language);
        }
        return writeOut(statusText(command, answer, m_language)) ? ExitStatus::done
                                                                 : outputFailed(m_language);
    }

    ExitStatus operator()(const HelpRequest& /*command*/) const
    {
        return writeOut(usage(m_language)) ? ExitStatus::done : outputFailed(m_language);
    }

    ExitStatus operator()(const VersionRequest& /*command*/) const
    {
        return writeOut("brevlin " BREVLIN_VERSION "\n") ? ExitStatus::done : outputFailed(m_language);
    }

    ExitStatus operator()(const UsageError& error) const { return complain(error, m_language); }

private:
    AppLanguage m_language;
};

} // namespace

int runVerb(int argumentCount, char** arguments)
{
    std::signal(SIGPIPE, SIG_IGN); // a pipe that nobody reads any longer is an error like any other
    const std::vector<std::string> words(arguments + (argumentCount > 0 ? 1 : 0), arguments + argumentCount);
    return static_cast<int>(std::visit(Runner(messageLanguage()), parseVerbLine(words)));
}

} // namespace brevlin
