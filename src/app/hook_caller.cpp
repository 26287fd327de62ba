#include "app/hook_caller.h"

#include "app/app_model.h"
#include "app/timer_control.h"
#include "core/session_record.h"
#include "exchange/instant_text.h"
#include "exchange/status_json.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

namespace brevlin {

namespace {

std::string number(Seconds length)
{
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), length.count());
    return {text.data(), end};
}

HookCall callFor(const HookOccasion& occasion, const TimerStatus& status, const TimeZoneRules& zone)
{
    const std::optional<SessionRecord> record =
        occasion.finished ? std::optional{SessionRecord(*occasion.finished)} : std::nullopt;
    std::string endsAt;
    if (status.endsAt) {
        appendInstant(endsAt, *status.endsAt, zone);
    }
    HookCall call;
    call.event = occasion.event;
    call.variables = {{"BREVLIN_EVENT", std::string(rawValue(occasion.event))},
                      {"BREVLIN_PHASE", std::string(rawValue(occasion.phase))},
                      {"BREVLIN_INTENTION", occasion.intention},
                      {"BREVLIN_STATE", std::string(rawValue(status.state))},
                      {"BREVLIN_PLANNED_SECONDS", number(status.planned)},
                      {"BREVLIN_REMAINING_SECONDS", number(status.remaining)},
                      {"BREVLIN_ENDS_AT", endsAt}};
    if (record) {
        call.variables.emplace_back("BREVLIN_OUTCOME", std::string(record->outcomeRawValue.text()));
        call.variables.emplace_back("BREVLIN_EFFECTIVE_SECONDS", number(record->effectiveDuration));
    }
    const auto json = statusJson(status, zone, record ? &*record : nullptr);
    call.input = json ? *json + '\n' : std::string();
    return call;
}

} // namespace

HookCaller::HookCaller(AppModel& model, HookParts parts, QObject* parent)
    : QObject(parent), m_model(model), m_parts(std::move(parts)), m_last(model.snapshot())
{
    connect(&model, &AppModel::phaseEnded, this,
            [this](const FinishedSession& finished) { m_finished = finished; });
    connect(&model, &AppModel::transitionApplied, this, &HookCaller::tell);
}

HookCaller::~HookCaller()
{
    *m_lives = false;
    m_parts.programs->hurry();
}

void HookCaller::tell()
{
    const TimerSnapshot previous = std::exchange(m_last, m_model.snapshot());
    for (const HookOccasion& occasion :
         hookOccasions(previous, m_last, std::exchange(m_finished, std::nullopt))) {
        call(occasion);
    }
}

void HookCaller::call(const HookOccasion& occasion)
{
    if (m_waiting == mostWaiting) {
        HookRecord record{HookRecord::Kind::leftOut, m_model.now(), {}};
        record.result.event = occasion.event;
        add(std::move(record));
        return;
    }
    ++m_waiting;
    m_parts.thread().post(
        [this, lives = m_lives, programs = m_parts.programs,
         call = callFor(occasion, TimerControl::status(m_model), *m_model.calendar().timeZone())] {
            auto results = programs->run(call);
            return [this, lives, results = std::move(results)] {
                if (*lives) {
                    take(results);
                }
            };
        });
}

void HookCaller::take(const std::vector<HookResult>& results)
{
    --m_waiting;
    for (const HookResult& result : results) {
        add({HookRecord::Kind::run, m_model.now(), result});
    }
}

void HookCaller::add(HookRecord record)
{
    m_records.push_front(std::move(record));
    if (m_records.size() > mostRecords) {
        m_records.pop_back();
    }
    Q_EMIT recordsChanged();
}

} // namespace brevlin
