#pragma once

#include "command/import_desk.h"
#include "platform/freedesktop/session/application_instance.h"
#include "remote/remote_control.h"
#include "remote/remote_desk.h"
#include "remote/timer_interface.h"

#include <string>

namespace brevlin {

class AppModel;
struct DesktopParts;

/// What comes from outside the process: second starts, other programs on the bus and the commands over the
/// socket.
class Requests final : public QObject
{
    Q_OBJECT

public:
    /// Serves at once. All outlive this.
    Requests(AppModel& model, DesktopParts& desktop, ApplicationInstance& instance);
    ~Requests() override;

Q_SIGNALS:
    /// The section of the main window, by its raw name, or none; and the token of the user's action.
    void windowWanted(const std::string& section, const std::string& token);
    void settingsWanted(const std::string& token);
    void quitWanted();

private:
    ImportDesk::Parts importParts(DesktopParts& desktop);
    RemoteControl::Actions remoteActions();
    void follow(const InstanceRequest& request);
    void follow(const ApplicationInstance::Command& command, const ApplicationInstance::Answer& answer);

    AppModel& m_model;
    ApplicationInstance& m_instance;
    ImportDesk m_importDesk;
    RemoteControl m_remoteControl;
    RemoteDesk m_remoteDesk;
    TimerInterface m_timerInterface;
};

} // namespace brevlin
