#include "requests.h"

#include "app/app_model.h"
#include "core/timer_verb.h"
#include "desktop_parts.h"
#include "platform/freedesktop/instance/instance_socket.h"
#include "platform/freedesktop/socket/control_answer.h"

#include <optional>
#include <utility>

namespace brevlin {

Requests::Requests(AppModel& model, DesktopParts& desktop, ApplicationInstance& instance)
    : m_model(model)
    , m_instance(instance)
    , m_importDesk(importParts(desktop))
    , m_remoteControl(model, desktop.scheduler, remoteActions())
    , m_remoteDesk(m_remoteControl)
    , m_timerInterface(m_remoteControl)
{
    connect(&instance, &ApplicationInstance::requested, this,
            [this](const InstanceRequest& request) { follow(request); });
    instance.serve(m_timerInterface);
    instance.setCommandHandler(
        [this](const ApplicationInstance::Command& command, const ApplicationInstance::Answer& answer) {
            follow(command, answer);
        });
}

Requests::~Requests()
{
    m_instance.setCommandHandler({});
}

ImportDesk::Parts Requests::importParts(DesktopParts& desktop)
{
    const auto records = [this] {
        return m_model.isHistoryAwaited() ? std::nullopt : std::optional{m_model.sessions()};
    };
    const auto adopt = [this](ImportPlan plan) {
        m_model.historyEditor().import(std::move(plan.records), std::move(plan.details));
    };
    const auto holds = [this](const Uuid& id) {
        return m_model.historyEditor().find(id) != nullptr;
    };
    return {desktop.files, desktop.documents, desktop.clock, records, adopt, holds};
}

RemoteControl::Actions Requests::remoteActions()
{
    const auto show = [this](const std::string& section, const std::string& token) {
        if (section == "settings") {
            Q_EMIT settingsWanted(token);
        } else {
            // The focus screen bears the timer's name within.
            Q_EMIT windowWanted(section == "focus" ? "timer" : section, token);
        }
    };
    return {show, [this] {
                Q_EMIT quitWanted();
            }};
}

// The sections of the window are the actions, and the verbs of the timer, for which no window opens.
void Requests::follow(const InstanceRequest& request)
{
    if (request.action == QLatin1String(InstanceRequest::background)) {
        return;
    }
    if (const auto verb = fromRawValue<TimerVerb>(request.action.toStdString())) {
        m_remoteControl.carryOut(*verb);
        return;
    }
    Q_EMIT windowWanted(request.action.toStdString(), request.token.toStdString());
}

void Requests::follow(const ApplicationInstance::Command& command, const ApplicationInstance::Answer& answer)
{
    if (command.name == QLatin1String(controlCommandName)) {
        m_remoteDesk.carryOut(command.arguments, answer);
        return;
    }
    const auto import =
        command.name == QLatin1String(importCommandName) ? importCommand(command.arguments) : std::nullopt;
    if (!import) {
        answer(socketAnswer::refused);
        return;
    }
    m_importDesk.carryOut(*import,
                          [answer](const ImportAnswer& result) { answer(importAnswerLine(result)); });
}

} // namespace brevlin
