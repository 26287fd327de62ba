#include "desktop_parts.h"

#include "native_windows.h"
#include "platform/freedesktop/bus/bus_greeting.h"
#include "platform/freedesktop/bus/bus_start.h"
#include "platform/freedesktop/files/program_files.h"
#include "platform/freedesktop/files/user_folders.h"
#include "platform/freedesktop/x11/x11_floating_window_system.h"
#include "platform/freedesktop/x11/x11_window_system.h"

#include <QStandardPaths>

#include <string>
#include <utility>
#include <vector>

namespace brevlin {

namespace {

std::vector<std::string> sharedDataFolders()
{
    std::vector<std::string> folders;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        folders.push_back(folder.toStdString());
    }
    return folders;
}

WindowSystems madeWindowSystems(TaskScheduler& scheduler)
{
    if (auto native = nativeWindowSystems()) {
        return std::move(*native);
    }
    return {std::make_unique<X11FloatingWindowSystem>(scheduler), std::make_unique<X11WindowSystem>()};
}

DocumentThread& made(std::unique_ptr<DocumentWorker>& worker)
{
    if (!worker) {
        worker = std::make_unique<DocumentWorker>();
    }
    return *worker;
}

} // namespace

DesktopParts::DesktopParts(BusStart& buses, const UserFolders& folders)
    : sessionBus(buses.session())
    , defaults(folders.preferences, files)
    , systemEvents(buses.system())
    , desktopSettings(sessionBus)
    , notificationSilencer(sessionBus)
    , soundPlayer(scheduler, sharedDataFolders(), "freedesktop")
    , loginItem(folders.autostart, programFile("brevlin"), files, documents)
    , statusItem(sessionBus, scheduler)
    , globalShortcuts(sessionBusAddress(), scheduler)
    , windowSystems(madeWindowSystems(scheduler))
    , floatingWindows(*windowSystems.floating)
    , windowSystem(*windowSystems.windows)
    , sessionLock(sessionBus, buses.system(), scheduler)
{}

DocumentThread& DesktopParts::transferThread()
{
    return made(transfers);
}

DocumentThread& DesktopParts::hookThread()
{
    return made(hooks);
}

} // namespace brevlin
