#include "platform/freedesktop/notifications/switches/settings_switch.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <utility>

namespace brevlin {

namespace {

const QString program = QStringLiteral("gsettings");
constexpr int failed = -1;
constexpr int longestFarewell = 500; // in milliseconds

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

SettingsSwitch::~SettingsSwitch()
{
    if (m_process != nullptr) {
        m_process->disconnect(this);
        m_process->waitForFinished(longestFarewell); // it is killed otherwise
    }
}

void SettingsSwitch::follow()
{
    if (!std::exchange(m_follows, true)) {
        m_bus.whenOpen(this, [this] {
            m_bus.connection().connect({}, QStringLiteral("/ca/desrt/dconf/Writer/user"),
                                       QStringLiteral("ca.desrt.dconf.Writer"), QStringLiteral("Notify"),
                                       this, SLOT(settingsChanged(QDBusMessage)));
        });
    }
}

void SettingsSwitch::read(Answer answer)
{
    const QStringList arguments{QStringLiteral("get"), QLatin1String(m_key.schema),
                                QLatin1String(m_key.name)};
    ask({arguments, [this, answer = std::move(answer)](int exitCode, const QByteArray& output) {
             if (exitCode != 0) {
                 answer(State::absent);
                 return;
             }
             const bool isOn = (output.trimmed() == "true") != m_key.isHeard;
             tell(isOn);
             answer(isOn ? State::silent : State::heard);
         }});
}

QStringList SettingsSwitch::setting(bool isOn) const
{
    return {QStringLiteral("set"), QLatin1String(m_key.schema), QLatin1String(m_key.name),
            text(isOn != m_key.isHeard)};
}

void SettingsSwitch::turn(bool isOn, Completion completion)
{
    ask({setting(isOn),
         [this, isOn, completion = std::move(completion)](int exitCode, const QByteArray& /*output*/) {
             if (exitCode == 0) {
                 know(isOn);
             }
             completion(exitCode == 0);
         }});
}

bool SettingsSwitch::turnOffNow(Seconds longest)
{
    const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(longest);
    if (m_process != nullptr) { // nothing that was asked before may come after this
        m_questions.resize(1);
        m_process->waitForFinished(static_cast<int>(limit.count()));
    }
    QProcess process;
    process.start(program, setting(false));
    const bool isFinished = process.waitForFinished(static_cast<int>(limit.count()));
    return isFinished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

// A prefix and what has changed below it: (s, as, s). Only ours is worth a process.
void SettingsSwitch::settingsChanged(const QDBusMessage& message)
{
    const auto change = busArguments<QString, QStringList, QString>(message);
    if (!change) {
        return;
    }
    const QString& prefix = std::get<0>(*change);
    const QStringList& changes = std::get<1>(*change);
    const QString key = QLatin1String(m_key.path) + QLatin1String(m_key.name);
    const bool isMeant = std::any_of(changes.begin(), changes.end(), [&](const QString& each) {
        const QString changed = prefix + each;
        return changed == key || (changed.endsWith(u'/') && key.startsWith(changed));
    });
    if (isMeant) {
        read([](State /*state*/) { /* which has been told already */ });
    }
}

void SettingsSwitch::ask(Question question)
{
    m_questions.push_back(std::move(question));
    if (m_process == nullptr) {
        askNext();
    }
}

void SettingsSwitch::askNext()
{
    m_process = new QProcess(this);
    connect(m_process, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
        finish(status == QProcess::NormalExit ? exitCode : failed);
    });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            finish(failed);
        }
    });
    m_process->start(program, m_questions.front().arguments);
}

void SettingsSwitch::finish(int exitCode)
{
    const Question question = std::move(m_questions.front());
    m_questions.pop_front();
    const QByteArray output = m_process->readAllStandardOutput();
    std::exchange(m_process, nullptr)->deleteLater();
    if (!m_questions.empty()) {
        askNext();
    }
    question.answered(exitCode, output);
}

std::unique_ptr<DoNotDisturbSwitch> makeSettingsSwitch(MessageBus& bus, SettingsKey key)
{
    return std::make_unique<SettingsSwitch>(bus, key);
}

} // namespace brevlin
