#pragma once

#include "platform/freedesktop/appearance/portal_desktop_settings.h"
#include "platform/freedesktop/clock/system_clock.h"
#include "platform/freedesktop/event_loop/document_worker.h"
#include "platform/freedesktop/event_loop/qt_task_scheduler.h"
#include "platform/freedesktop/event_loop/termination_signals.h"
#include "platform/freedesktop/files/file_user_defaults.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "platform/freedesktop/login/autostart_login_item.h"
#include "platform/freedesktop/notifications/switches/desktop_notification_silencer.h"
#include "platform/freedesktop/session/bus_session_lock.h"
#include "platform/freedesktop/session/desktop_system_events.h"
#include "platform/freedesktop/shortcuts/desktop_global_shortcuts.h"
#include "platform/freedesktop/sound/process_sound_player.h"
#include "platform/freedesktop/tray/desktop_status_item.h"
#include "platform/window_systems.h"
#include "storage/kept_document.h"

#include <memory>

namespace brevlin {

class BusStart;
struct UserFolders;

/// The real part behind each interface of the platform. They outlive whatever borrows them.
struct DesktopParts
{
    DesktopParts(BusStart& buses, const UserFolders& folders);
    DesktopParts(const DesktopParts&) = delete;
    DesktopParts& operator=(const DesktopParts&) = delete;

    DocumentDisk disk() { return {defaults, documents, scheduler, clock}; }
    /// For the files that the user chooses; made for the first of them.
    DocumentThread& transferThread();
    /// For the user's own programs; made for the first of them.
    DocumentThread& hookThread();

    MessageBus& sessionBus;
    PosixDurableFile files;
    FileUserDefaults defaults;
    SystemClock clock;
    QtTaskScheduler scheduler;
    std::unique_ptr<DocumentWorker> transfers;
    std::unique_ptr<DocumentWorker> hooks;
    DocumentWorker documents;
    DesktopSystemEvents systemEvents;
    PortalDesktopSettings desktopSettings;
    DesktopNotificationSilencer notificationSilencer;
    ProcessSoundPlayer soundPlayer;
    AutostartLoginItem loginItem;
    DesktopStatusItem statusItem;
    DesktopGlobalShortcuts globalShortcuts;
    WindowSystems windowSystems;
    FloatingWindowSystem& floatingWindows; // both of these
    WindowSystem& windowSystem;
    BusSessionLock sessionLock;
    TerminationSignals terminationSignals;
};

} // namespace brevlin
