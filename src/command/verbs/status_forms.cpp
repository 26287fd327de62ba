#include "command/verbs/status_forms.h"

#include "core/time_text.h"
#include "storage/json/json_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText notRunning{"Brevlin 未运行", "Brevlin is not running"};
constexpr std::string_view notRunningState = "notRunning";

// What is left, or what waits.
std::string clock(const TimerStatus& status)
{
    return TimeText::clock(status.state == TimerRunState::ringing ? status.planned : status.remaining);
}

// Breaks are for nothing; the next focus phase may be for something already.
std::string purpose(const TimerStatus& status)
{
    return status.phase == TimerPhase::focus ? status.intention : std::string();
}

std::string timeOfDay(Instant instant)
{
    const auto seconds = static_cast<std::time_t>(std::floor(unixTime(instant).count()));
    std::tm local{};
    std::array<char, 16> text{};
    if (localtime_r(&seconds, &local) == nullptr) {
        return {};
    }
    return {text.data(), std::strftime(text.data(), text.size(), "%H:%M", &local)};
}

std::string sentence(const TimerStatus& status, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    const std::string phase(title(status.phase, language));
    std::string text;
    switch (status.state) {
    case TimerRunState::idle:
        text = isEnglish ? "Not started: " + phase + " (" + clock(status) + ")"
                         : "未开始：" + phase + "（" + clock(status) + "）";
        break;
    case TimerRunState::running: {
        const std::string end = timeOfDay(status.endsAt.value_or(Instant{}));
        text = isEnglish ? phase + ", " + clock(status) + " left, until " + end
                         : phase + "，剩余 " + clock(status) + "，至 " + end;
        break;
    }
    case TimerRunState::paused:
        text = isEnglish ? phase + ", paused with " + clock(status) + " left"
                         : phase + "，已暂停，剩余 " + clock(status);
        break;
    case TimerRunState::ringing:
        text = isEnglish ? "Waiting to start: " + phase + " (" + clock(status) + ")"
                         : "等待开始：" + phase + "（" + clock(status) + "）";
        break;
    }
    const std::string intention = purpose(status);
    return intention.empty() ? text : text + (isEnglish ? ": " : "：") + intention;
}

// What a bar has room for.
std::string barText(const TimerStatus& status, AppLanguage language)
{
    static constexpr BilingualText paused{"（已暂停）", " (paused)"};
    static constexpr BilingualText waiting{"（等待开始）", " (waiting)"};
    std::string text = clock(status) + " ";
    const std::string intention = purpose(status);
    text += intention.empty() ? std::string(title(status.phase, language)) : intention;
    if (status.state == TimerRunState::paused) {
        text += paused.in(language);
    } else if (status.state == TimerRunState::ringing) {
        text += waiting.in(language);
    }
    return text;
}

// https://docs.gtk.org/Pango/pango_markup.html
std::string markupEscaped(std::string_view text)
{
    std::string result;
    for (const char each : text) {
        switch (each) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        default:
            result += each;
        }
    }
    return result;
}

std::int64_t percentage(const TimerStatus& status)
{
    const bool isActive = status.state == TimerRunState::running || status.state == TimerRunState::paused;
    return isActive && status.planned > Seconds::zero()
               ? std::llround(100.0 * (1.0 - std::clamp(status.remaining / status.planned, 0.0, 1.0)))
               : 0;
}

std::string finished(JsonWriter writer)
{
    writer.endObject();
    return *std::move(writer).finish() + '\n'; // from texts that were JSON already
}

// https://man.archlinux.org/man/waybar-custom.5.en
std::string waybar(const std::optional<TimerStatus>& status, AppLanguage language)
{
    JsonWriter writer;
    writer.beginObject();
    writer.field("text", std::string_view{status ? markupEscaped(barText(*status, language)) : ""});
    writer.field("alt", status ? rawValue(status->state) : notRunningState);
    writer.field("tooltip", std::string_view{status ? markupEscaped(sentence(*status, language))
                                                    : std::string(notRunning.in(language))});
    writer.key("class");
    writer.beginArray();
    writer.value(status ? rawValue(status->state) : notRunningState);
    if (status) {
        writer.value(rawValue(status->phase));
    }
    writer.endArray();
    writer.field("percentage", status ? percentage(*status) : 0);
    return finished(std::move(writer));
}

// The block protocol of i3bar, https://i3wm.org/docs/i3bar-protocol.html, which i3blocks takes with
// format=json.
std::string i3blocks(const std::optional<TimerStatus>& status, AppLanguage language)
{
    JsonWriter writer;
    writer.beginObject();
    writer.field("full_text", std::string_view{status ? barText(*status, language) : ""});
    writer.field("short_text", std::string_view{status ? clock(*status) : ""});
    writer.field("urgent", status && status->state == TimerRunState::ringing);
    writer.field("instance", status ? rawValue(status->state) : notRunningState);
    return finished(std::move(writer));
}

// https://docs.rs/i3status-rs/latest/i3status_rs/blocks/custom/index.html
std::string i3statusRust(const std::optional<TimerStatus>& status, AppLanguage language)
{
    std::string_view state = "Idle";
    if (status && status->state == TimerRunState::running) {
        state = status->phase == TimerPhase::focus ? "Info" : "Good";
    } else if (status && status->state != TimerRunState::idle) {
        state = "Warning";
    }
    JsonWriter writer;
    writer.beginObject();
    writer.field("icon", std::string_view{});
    writer.field("state", state);
    writer.field("text", std::string_view{status ? barText(*status, language) : ""});
    writer.field("short_text", std::string_view{status ? clock(*status) : ""});
    return finished(std::move(writer));
}

} // namespace

std::string statusLine(StatusForm form, const std::optional<TimerStatus>& status, AppLanguage language)
{
    switch (form) {
    case StatusForm::waybar:
        return waybar(status, language);
    case StatusForm::i3blocks:
        return i3blocks(status, language);
    case StatusForm::i3statusRust:
        return i3statusRust(status, language);
    case StatusForm::plain:
        return (status ? barText(*status, language) : std::string()) + '\n';
    case StatusForm::sentence:
    case StatusForm::json:
        break;
    }
    return (status ? sentence(*status, language) : std::string(notRunning.in(language))) + '\n';
}

TimerStatus statusAt(TimerStatus status, Instant now)
{
    if (status.endsAt) {
        status.remaining = std::clamp(*status.endsAt - now, Seconds::zero(), status.planned);
    }
    return status;
}

} // namespace brevlin
