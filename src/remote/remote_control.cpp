#include "remote/remote_control.h"

#include "app/app_model.h"
#include "app/timer_control.h"
#include "core/language.h"
#include "exchange/status_json.h"

#include <array>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

constexpr std::array<std::string_view, 5> sections{"", "focus", "history", "statistics", "settings"};

} // namespace

RemoteControl::RemoteControl(AppModel& model, TaskScheduler& scheduler, Actions actions, QObject* parent)
    : QObject(parent), m_model(model), m_scheduler(scheduler), m_actions(std::move(actions))
{
    for (const auto signal :
         {&AppModel::snapshotChanged, &AppModel::sessionsChanged, &AppModel::preferencesChanged,
          &AppModel::preparedIntentionChanged, &AppModel::alertSoundPlayingChanged}) {
        connect(&model, signal, this, &RemoteControl::mayHaveChanged);
    }
    connect(&model, &AppModel::ticked, this, [this] {
        if (isNewDay()) {
            mayHaveChanged();
        }
    });
    isNewDay();
}

std::optional<std::string> RemoteControl::carryOut(TimerVerb verb)
{
    const auto done = TimerControl::carryOut(m_model, verb);
    return done ? std::nullopt : std::optional{std::string(done.error().in(m_model.language()))};
}

std::optional<std::string> RemoteControl::start(const std::optional<std::string>& intention)
{
    if (intention && !TimerControl::refusal(m_model, TimerVerb::start)) {
        m_model.setIntention(*intention);
    }
    return carryOut(TimerVerb::start);
}

void RemoteControl::setIntention(const std::string& intention)
{
    m_model.setIntention(intention);
}

bool RemoteControl::show(const std::string& section, const std::string& token)
{
    for (const std::string_view known : sections) {
        if (section == known) {
            m_actions.show(section, token);
            return true;
        }
    }
    return false;
}

void RemoteControl::quit()
{
    m_quitting = m_scheduler.after(Seconds::zero(), [this] { m_actions.quit(); });
}

std::string RemoteControl::statusJson() const
{
    const auto json = brevlin::statusJson(TimerControl::status(m_model), *m_model.calendar().timeZone());
    return json ? *json : absentStatusJson();
}

std::string RemoteControl::languageTag() const
{
    return std::string(localeIdentifier(m_model.language()));
}

// A transition emits several signals; all of it has happened by the next turn of the event loop.
void RemoteControl::mayHaveChanged()
{
    if (!m_telling) {
        m_telling = m_scheduler.after(Seconds::zero(), [this] {
            m_telling.reset();
            Q_EMIT changed();
        });
    }
}

bool RemoteControl::isNewDay()
{
    const auto day = m_model.calendar().localDay(m_model.now()).time_since_epoch().count();
    return std::exchange(m_day, day) != day;
}

} // namespace brevlin
