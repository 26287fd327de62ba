#include "command/line/usage.h"
#include "command/verbs/status_forms.h"
#include "command/verbs/verb_line.h"
#include "platform/freedesktop/socket/control_answer.h"
#include "platform/freedesktop/socket/socket_line.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace brevlin {
namespace {

std::vector<std::string> words(const std::string& line)
{
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(VerbLine, takes_every_command_and_refuses_what_is_none)
{
    const std::vector<std::string> right{"start",
                                         "start --intention x",
                                         "start --intention=",
                                         "pause",
                                         "resume",
                                         "toggle",
                                         "skip",
                                         "stop",
                                         "extend",
                                         "silence",
                                         "intention x",
                                         "intention -- --x",
                                         "show",
                                         "show history",
                                         "quit",
                                         "status",
                                         "status --json",
                                         "status --format waybar --follow --every-second",
                                         "status --json --format json",
                                         "--help",
                                         "start --help",
                                         "--version",
                                         ""};
    for (const std::string& line : right) {
        EXPECT_FALSE(std::holds_alternative<UsageError>(parseVerbLine(words(line)))) << line;
    }
    const std::vector<std::string> wrong{"begin",
                                         "start x",
                                         "start --intention",
                                         "pause --intention x",
                                         "intention",
                                         "intention a b",
                                         "show about",
                                         "show history statistics",
                                         "quit now",
                                         "status --format xml",
                                         "status --format sentence",
                                         "status --every-second",
                                         "status --json --format waybar",
                                         "status x",
                                         "--version x",
                                         "start --intention \xff",
                                         "intention \xc3"};
    for (const std::string& line : wrong) {
        EXPECT_TRUE(std::holds_alternative<UsageError>(parseVerbLine(words(line)))) << line;
    }
}

TEST(VerbLine, is_described_by_the_help_for_each_command_in_both_languages)
{
    for (const AppLanguage language : allCases<AppLanguage>()) {
        for (const auto& [verb, name] : RawValues<TimerVerb>::cases) {
            EXPECT_NE(usage(language).find("brevlin " + std::string(name)), std::string_view::npos) << name;
        }
        for (const auto& [form, name] : RawValues<StatusForm>::cases) {
            EXPECT_EQ(usage(language).find(name) != std::string_view::npos, form != StatusForm::sentence)
                << name;
        }
    }
}

TimerStatus focusOn(const char* intention, TimerRunState state)
{
    TimerStatus status;
    status.state = state;
    status.remaining = Seconds{1125};
    status.planned = Seconds{1500};
    status.intention = intention;
    if (state == TimerRunState::running) {
        status.endsAt = instantFromUnixTime(Seconds{1125});
    }
    return status;
}

TEST(StatusForms, are_what_each_bar_reads_with_texts_that_mean_something_to_it)
{
    const auto english = [](StatusForm form, const std::optional<TimerStatus>& status) {
        return statusLine(form, status, AppLanguage::english);
    };
    const TimerStatus running = focusOn("R&D <b>", TimerRunState::running);
    EXPECT_EQ(english(StatusForm::waybar, running),
              R"({"text":"18:45 R&amp;D &lt;b&gt;","alt":"running",)"
              R"("tooltip":"Focus, 18:45 left, until 00:18: R&amp;D &lt;b&gt;","class":["running","focus"],)"
              R"("percentage":25})"
              "\n");
    EXPECT_EQ(english(StatusForm::i3blocks, running),
              R"({"full_text":"18:45 R&D <b>","short_text":"18:45","urgent":false,"instance":"running"})"
              "\n");
    EXPECT_EQ(english(StatusForm::i3statusRust, running),
              R"({"icon":"","state":"Info","text":"18:45 R&D <b>","short_text":"18:45"})"
              "\n");
    EXPECT_EQ(english(StatusForm::plain, running), "18:45 R&D <b>\n");
    EXPECT_EQ(english(StatusForm::sentence, running), "Focus, 18:45 left, until 00:18: R&D <b>\n");
    EXPECT_EQ(statusLine(StatusForm::sentence, focusOn("写书", TimerRunState::paused),
                         AppLanguage::simplifiedChinese),
              "专注，已暂停，剩余 18:45：写书\n");
    EXPECT_EQ(english(StatusForm::plain, focusOn("", TimerRunState::paused)), "18:45 Focus (paused)\n");

    TimerStatus waiting = focusOn("next", TimerRunState::ringing);
    waiting.phase = TimerPhase::shortBreak;
    waiting.planned = Seconds{300};
    EXPECT_EQ(english(StatusForm::sentence, waiting), "Waiting to start: Break (05:00)\n");
    EXPECT_NE(english(StatusForm::i3blocks, waiting).find(R"("urgent":true)"), std::string::npos);
    EXPECT_EQ(english(StatusForm::plain, std::nullopt), "\n");
    EXPECT_EQ(english(StatusForm::waybar, std::nullopt),
              R"({"text":"","alt":"notRunning","tooltip":"Brevlin is not running","class":["notRunning"],)"
              R"("percentage":0})"
              "\n");
}

TEST(StatusForms, reckon_what_is_left_from_the_end_of_the_phase)
{
    const TimerStatus status = focusOn("", TimerRunState::running);
    EXPECT_EQ(statusAt(status, instantFromUnixTime(Seconds{1000})).remaining, Seconds{125});
    EXPECT_EQ(statusAt(status, instantFromUnixTime(Seconds{2000})).remaining, Seconds::zero());
    EXPECT_EQ(statusAt(status, instantFromUnixTime(Seconds{-9000})).remaining,
              Seconds{1500}); // a clock set back
}

TEST(ControlAnswer, comes_through_the_socket_whatever_its_text)
{
    const ControlAnswer answer{ControlAnswer::Kind::status, "a\tb\n%41 100% 专注 \x01", "zh-Hans", 42};
    const std::string line = controlAnswerLine(answer);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    const ControlAnswer told = controlAnswer(line);
    EXPECT_EQ(told.kind, answer.kind);
    EXPECT_EQ(told.text, answer.text);
    EXPECT_EQ(told.language, answer.language);
    EXPECT_EQ(told.revision, answer.revision);
    for (const char* none : {"", "\n", "ending\n", "refused\n", "status\t1\n", "okay\n"}) {
        EXPECT_EQ(controlAnswer(none).kind, ControlAnswer::Kind::unknown) << none;
    }
    EXPECT_EQ(percentDecoded("%4"), "%4");
    EXPECT_EQ(percentDecoded("%zz%41"), "%zzA");
}

} // namespace
} // namespace brevlin
