#include "remote/timer_interface.h"

#include "app/app_model.h"
#include "app/timer_control.h"
#include "platform/freedesktop/bus/bus_values.h"
#include "remote/remote_control.h"
#include "remote/timer_interface_description.h"

#include <QDBusError>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

const QString interface = QStringLiteral("com.quillmark.Brevlin.Timer1");
const QString remaining = QStringLiteral("Remaining");

BusAnswer answered(const std::optional<std::string>& refusal)
{
    if (refusal) {
        return BusRefusal{QStringLiteral("com.quillmark.Brevlin.Error.Refused"),
                          QString::fromStdString(*refusal)};
    }
    return QVariantList{};
}

BusRefusal invalid(const QString& text)
{
    return {QDBusError::errorString(QDBusError::InvalidArgs), text};
}

QString qt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

qlonglong microseconds(Seconds length)
{
    constexpr double limit = 9.2e18;
    return std::llround(std::clamp(length.count() * 1e6, -limit, limit));
}

qlonglong microseconds(Instant instant)
{
    return microseconds(unixTime(instant));
}

uint count(std::int64_t number)
{
    return static_cast<uint>(std::clamp<std::int64_t>(number, 0, std::numeric_limits<uint>::max()));
}

// The interface alone: a whole document is what the bus library makes of it.
QString description()
{
    const QString document = QString::fromUtf8(timerInterfaceDescription);
    const qsizetype begin = document.indexOf(QLatin1String("  <interface"));
    return document.mid(begin, document.lastIndexOf(QLatin1String("</node>")) - begin);
}

QVariantMap recordMap(const FinishedSession& session)
{
    return {
        {QStringLiteral("id"), qt(session.id.text())},
        {QStringLiteral("phase"), qt(rawValue(session.phase))},
        {QStringLiteral("outcome"), qt(rawValue(session.outcome))},
        {QStringLiteral("intention"), qt(session.intention.value_or(std::string()))},
        {QStringLiteral("time_zone"), qt(session.timeZoneIdentifierAtStart)},
        {QStringLiteral("start"), microseconds(session.startedAt)},
        {QStringLiteral("end"), microseconds(session.endedAt)},
        {QStringLiteral("effective"), microseconds(session.effectiveDuration)},
        {QStringLiteral("planned"), microseconds(session.plannedDuration)},
        {QStringLiteral("paused"), microseconds(session.pauseDuration)},
        {QStringLiteral("interruptions"), count(session.interruptionCount)},
        {QStringLiteral("cycle"), count(session.cycleIndex)},
    };
}

} // namespace

TimerInterface::TimerInterface(RemoteControl& control)
    : BusInterface(interface, description()), m_control(control)
{
    connect(&control, &RemoteControl::changed, this, &TimerInterface::tellChanges);
    // Told with the changes, once the user sees and hears the end.
    connect(&control.model(), &AppModel::phaseEnded, this,
            [this](const FinishedSession& finished) { m_ended.push_back(finished); });
}

QVariantMap TimerInterface::properties() const
{
    const AppModel& model = m_control.model();
    const TimerStatus status = TimerControl::status(model);
    const auto can = [&model](TimerVerb verb) {
        return !TimerControl::refusal(model, verb);
    };
    const Seconds left =
        status.endsAt ? std::max(*status.endsAt - model.now(), Seconds::zero()) : status.remaining;
    return {
        {QStringLiteral("Phase"), qt(rawValue(status.phase))},
        {QStringLiteral("State"), qt(rawValue(status.state))},
        {QStringLiteral("EndsAt"), status.endsAt ? microseconds(*status.endsAt) : 0},
        {remaining, microseconds(left)},
        {QStringLiteral("PlannedDuration"), microseconds(status.planned)},
        {QStringLiteral("CyclePosition"), count(status.cyclePosition)},
        {QStringLiteral("CycleLength"), count(status.cycleLength)},
        {QStringLiteral("Intention"), qt(status.intention)},
        {QStringLiteral("FocusToday"), microseconds(status.focusToday)},
        {QStringLiteral("CompletedToday"), count(status.completedToday)},
        {QStringLiteral("AlertSounding"), model.isAlertSoundPlaying()},
        {QStringLiteral("CanStart"), can(TimerVerb::start)},
        {QStringLiteral("CanPause"), can(TimerVerb::pause)},
        {QStringLiteral("CanResume"), can(TimerVerb::resume)},
        {QStringLiteral("CanSkip"), can(TimerVerb::skip)},
        {QStringLiteral("CanStop"), can(TimerVerb::stop)},
        {QStringLiteral("CanExtend"), can(TimerVerb::extend)},
        {QStringLiteral("Language"), qt(m_control.languageTag())},
    };
}

BusAnswer TimerInterface::answer(const QString& method, const QVariantList& arguments)
{
    if (method == QLatin1String("Start")) {
        return start(qdbus_cast<QVariantMap>(arguments.at(0)));
    }
    if (method == QLatin1String("SetIntention")) {
        m_control.setIntention(arguments.at(0).toString().toStdString());
        return QVariantList{};
    }
    if (method == QLatin1String("Show")) {
        return show(arguments.at(0).toString(), qdbus_cast<QVariantMap>(arguments.at(1)));
    }
    if (method == QLatin1String("Quit")) {
        m_control.quit();
        return QVariantList{};
    }
    if (method == QLatin1String("Status")) {
        return QVariantList{qt(m_control.statusJson()), qt(m_control.languageTag())};
    }
    // The others are the verbs.
    return answered(m_control.carryOut(*fromRawValue<TimerVerb>(method.toLower().toStdString())));
}

BusAnswer TimerInterface::start(const QVariantMap& options)
{
    const QVariant given = options.value(QStringLiteral("intention"));
    if (!given.isValid()) {
        return answered(m_control.start(std::nullopt));
    }
    const auto intention = busValue<QString>(given);
    return intention ? answered(m_control.start(intention->toStdString()))
                     : invalid(QStringLiteral("\"intention\" is a text"));
}

BusAnswer TimerInterface::show(const QString& section, const QVariantMap& platformData)
{
    const auto text = [&platformData](const char* key) {
        return busValue<QString>(platformData.value(QString::fromLatin1(key))).value_or(QString());
    };
    const QString startup = text("desktop-startup-id");
    const QString token = startup.isEmpty() ? text("activation-token") : startup;
    if (!m_control.show(section.toStdString(), token.toStdString())) {
        return invalid(QStringLiteral("There is no section \"%1\"").arg(section));
    }
    return QVariantList{};
}

// At first there is nobody who could have been told anything else.
void TimerInterface::tellChanges()
{
    for (const FinishedSession& finished : std::exchange(m_ended, {})) {
        emitSignal("PhaseEnded", {recordMap(finished)});
    }
    QVariantMap now = properties();
    now.remove(remaining);
    QVariantMap changes;
    for (auto each = now.cbegin(); each != now.cend(); ++each) {
        if (m_told.value(each.key()) != each.value()) {
            changes.insert(each.key(), each.value());
        }
    }
    m_told = std::move(now);
    if (!changes.isEmpty()) {
        emitPropertiesChanged(changes);
    }
}

} // namespace brevlin
