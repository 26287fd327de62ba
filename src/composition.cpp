#include "composition.h"

#include "app/absence_announcer.h"
#include "app/app_model.h"
#include "app/capsule_choreography.h"
#include "application.h"
#include "command/import_desk.h"
#include "picture_sender.h"
#include "platform/freedesktop/appearance/portal_desktop_settings.h"
#include "platform/freedesktop/bus/bus_greeting.h"
#include "platform/freedesktop/bus/bus_start.h"
#include "platform/freedesktop/clock/system_clock.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "platform/freedesktop/clock/time_locale.h"
#include "platform/freedesktop/event_loop/document_worker.h"
#include "platform/freedesktop/event_loop/qt_task_scheduler.h"
#include "platform/freedesktop/event_loop/sudden_exit.h"
#include "platform/freedesktop/event_loop/termination_signals.h"
#include "platform/freedesktop/files/file_user_defaults.h"
#include "platform/freedesktop/files/leftovers.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "platform/freedesktop/files/program_files.h"
#include "platform/freedesktop/files/user_folders.h"
#include "platform/freedesktop/hooks/folder_hook_programs.h"
#include "platform/freedesktop/instance/instance_socket.h"
#include "platform/freedesktop/login/autostart_login_item.h"
#include "platform/freedesktop/notifications/desktop_notification_center.h"
#include "platform/freedesktop/notifications/server/dbus_notification_server.h"
#include "platform/freedesktop/notifications/switches/desktop_notification_silencer.h"
#include "platform/freedesktop/session/application_instance.h"
#include "platform/freedesktop/session/bus_session_lock.h"
#include "platform/freedesktop/session/desktop_system_events.h"
#include "platform/freedesktop/shortcuts/desktop_global_shortcuts.h"
#include "platform/freedesktop/socket/control_answer.h"
#include "platform/freedesktop/sound/process_sound_player.h"
#include "platform/freedesktop/tray/desktop_status_item.h"
#include "platform/freedesktop/x11/x11_floating_window_system.h"
#include "platform/freedesktop/x11/x11_window_system.h"
#include "remote/remote_control.h"
#include "remote/remote_desk.h"
#include "remote/timer_interface.h"
#include "storage/capsule_position.h"
#include "storage/main_window_store.h"
#include "storage/silence_note.h"
#include "ui/capsule/top_panel_controller.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/brevlin_style.h"
#include "ui/main/app_section.h"
#include "ui/main/main_window.h"
#include "ui/main/message_presenter.h"
#include "ui/main/quit_sequence.h"
#include "ui/main/settings_window.h"
#include "ui/style/application_icon.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"
#include "ui/tray/tray.h"

#include <QApplication>
#include <QSessionManager>
#include <QStandardPaths>

#include <malloc.h>

#include <optional>
#include <utility>

namespace brevlin {

namespace {

// How long the first window of all waits for the desktop to say whether it is light or dark, so that it does
// not flash. The answer takes long only where it is the first that this session asks for, and no time where
// nobody gives any. Later ones look as the last one did until then.
constexpr Seconds longestWaitForAppearance{1.0};
// What nobody looks for in the first moment waits until the window has been painted.
constexpr Seconds quietMoment{0.2};

std::vector<std::string> sharedDataFolders()
{
    std::vector<std::string> folders;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        folders.push_back(folder.toStdString());
    }
    return folders;
}

ColorScheme schemeOf(DesktopSettings::ColorScheme scheme)
{
    return scheme == DesktopSettings::ColorScheme::dark ? ColorScheme::dark : ColorScheme::light;
}

} // namespace

class Composition::Parts final
{
public:
    Parts(Application& application, BusStart& buses, const UserFolders& folders,
          ApplicationInstance& instance, FirstShow firstShow);
    ~Parts()
    {
        m_instance.setCommandHandler({});
        m_notificationCenter.setGate({});
        m_notificationCenter.setBannerPlaceHandler({});
        m_notificationCenter.setBannerObstacle({});
        m_sessionLock.setChangeHandler({});
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

private:
    DocumentDisk disk() { return {m_defaults, m_documents, m_scheduler, m_clock}; }
    AppModelParts modelParts(const UserFolders& folders);
    DocumentThread& transferThread();
    DocumentThread& hookThread();
    ImportDesk::Parts importParts();
    std::unique_ptr<DesktopNotificationCenter> makeCenter();
    void letAnnouncementsThrough(DesktopNotificationCenter& center);
    RemoteControl::Actions remoteActions();
    UserNotificationCenter& absenceCenter();
    std::string activationToken() const;
    void connectQuitting(const Application& application);
    void followAppearance(FirstShow firstShow);
    void applyAppearance();
    void showColors(ColorScheme scheme);
    void showFirst();
    void follow(const InstanceRequest& request);
    void follow(const ApplicationInstance::Command& command, const ApplicationInstance::Answer& answer);
    void showWindow(const std::string& activationToken);
    void notify(const std::string& title, const std::string& text);

    // What the model and the window borrow stands before them.
    ApplicationInstance& m_instance;
    MessageBus& m_sessionBus;
    PosixDurableFile m_files;
    FileUserDefaults m_defaults;
    SystemClock m_clock;
    QtTaskScheduler m_scheduler;
    std::unique_ptr<DocumentWorker> m_transfers; // made for the first file that the user chooses
    std::unique_ptr<DocumentWorker> m_hooks;     // made for the first transition of the timer
    DocumentWorker m_documents;
    DesktopSystemEvents m_systemEvents;
    PortalDesktopSettings m_desktopSettings;
    DesktopNotificationCenter m_notificationCenter;
    DesktopNotificationSilencer m_notificationSilencer;
    ProcessSoundPlayer m_soundPlayer;
    AutostartLoginItem m_loginItem;
    DesktopStatusItem m_statusItem;
    DesktopGlobalShortcuts m_globalShortcuts;
    CapsulePositionStore m_capsulePositionStore;
    X11FloatingWindowSystem m_floatingWindows;
    BusSessionLock m_sessionLock;
    TopPanelController m_capsuleController;
    X11WindowSystem m_windowSystem;
    TerminationSignals m_terminationSignals;
    BrevlinStyle* m_style;       // owned by the application
    ColorScheme m_desktopScheme; // of the desktop's own palette, where it states no preference
    std::optional<ColorScheme> m_shownScheme;
    std::optional<bool> m_wasDark; // what the store has, or will have
    MainWindowStore m_windowStore;
    std::unique_ptr<DesktopNotificationCenter> m_absenceCenter; // made for the first question
    AppModel m_model;
    AbsenceAnnouncer m_absenceAnnouncer;
    ImportDesk m_importDesk;
    RemoteControl m_remoteControl;
    RemoteDesk m_remoteDesk;
    TimerInterface m_timerInterface;
    CapsuleChoreography m_capsule;
    SectionSelection m_selection;
    MainWindow m_window;
    Tray m_tray;
    SettingsWindow m_settingsWindow;
    MessagePresenter m_messagePresenter;
    QuitSequence m_quitSequence;
    std::unique_ptr<DesktopNotificationCenter> m_messageCenter; // made for the first message
    TaskHandle m_firstShow;
    TaskHandle m_lateStart;
    SuddenExit m_suddenExit;
};

Composition::Parts::Parts(Application& application, BusStart& buses, const UserFolders& folders,
                          ApplicationInstance& instance, FirstShow firstShow)
    : m_instance(instance)
    , m_sessionBus(buses.session())
    , m_defaults(folders.preferences, m_files)
    , m_systemEvents(buses.system())
    , m_desktopSettings(m_sessionBus)
    , m_notificationCenter(std::make_unique<DBusNotificationServer>(m_sessionBus), m_clock, m_scheduler)
    , m_notificationSilencer(m_sessionBus)
    , m_soundPlayer(m_scheduler, sharedDataFolders(), "freedesktop")
    , m_loginItem(folders.autostart, programFile("brevlin"), m_files, m_documents)
    , m_statusItem(m_sessionBus, m_scheduler)
    , m_globalShortcuts(sessionBusAddress(), m_scheduler)
    , m_capsulePositionStore(disk())
    , m_floatingWindows(m_scheduler)
    , m_sessionLock(m_sessionBus, buses.system(), m_scheduler)
    , m_capsuleController(m_floatingWindows, m_sessionLock, m_scheduler, m_capsulePositionStore)
    , m_style(new BrevlinStyle)
    , m_desktopScheme(Theme::of(QApplication::palette()).scheme())
    , m_windowStore(disk())
    , m_model(modelParts(folders))
    , m_absenceAnnouncer(m_model, [this]() -> UserNotificationCenter& { return absenceCenter(); })
    , m_importDesk(importParts())
    , m_remoteControl(m_model, m_scheduler, remoteActions())
    , m_remoteDesk(m_remoteControl)
    , m_timerInterface(m_remoteControl)
    , m_capsule(m_capsuleController, m_scheduler, m_model)
    , m_selection(m_windowStore)
    , m_window((QApplication::setStyle(m_style), m_model), m_selection, m_windowStore, m_windowSystem,
               m_floatingWindows)
    , m_tray(m_model, m_selection, m_statusItem, m_windowSystem, m_floatingWindows)
    , m_settingsWindow(m_model, m_windowSystem)
    , m_messagePresenter(m_model.messages(), {&m_window, &m_settingsWindow},
                         [this](const std::string& title, const std::string& text) { notify(title, text); })
    , m_quitSequence(m_model, m_documents, m_scheduler)
    , m_suddenExit([this] {
        m_model.blockSignals(true); // no view is to draw on a display that is gone
        m_quitSequence.finishNow();
    })
{
    m_style->setCompositing([this] { return m_windowSystem.isComposited(); });
    m_style->setPictureSender(pictureSender(m_windowSystem));
    followAppearance(firstShow);
    m_loginItem.followProgram();
    m_sessionLock.setChangeHandler([this] {
        m_capsuleController.followLock();
        m_model.setSessionLocked(m_sessionLock.isLocked());
    });
    m_notificationCenter.setBannerPlaceHandler(
        [this](const std::optional<BannerPlace>& place) { m_capsuleController.setBannerPlace(place); });
    m_notificationCenter.setBannerObstacle([this](const BannerPlace& place) {
        return m_model.isEndPresented() && m_capsuleController.meetsBanners(place);
    });
    letAnnouncementsThrough(m_notificationCenter);
    QObject::connect(&m_model.focusQuiet(), &FocusQuiet::ownSilenceChanged, &m_notificationSilencer,
                     [this](bool isKept) { m_notificationCenter.setOwnSilence(isKept); });
    connectQuitting(application);
    QObject::connect(&m_window, &MainWindow::alertSizeRequested, &m_capsule,
                     &CapsuleChoreography::toggleCompletionSize);
    QObject::connect(&m_window, &MainWindow::settingsRequested, &m_settingsWindow,
                     [this] { m_settingsWindow.present(); });
    QObject::connect(
        &m_model, &AppModel::mainWindowActivationRequested, &m_window,
        [this](const std::string& token) { showWindow(token.empty() ? activationToken() : token); });
    QObject::connect(&instance, &ApplicationInstance::requested, &m_window,
                     [this](const InstanceRequest& request) { follow(request); });
    instance.serve(m_timerInterface);
    instance.setCommandHandler(
        [this](const ApplicationInstance::Command& command, const ApplicationInstance::Answer& answer) {
            follow(command, answer);
        });
    m_lateStart = m_scheduler.after(quietMoment, [] {
        QApplication::setWindowIcon(applicationIcon());
        malloc_trim(0); // what the start alone has used
    });
}

AppModelParts Composition::Parts::modelParts(const UserFolders& folders)
{
    removeLeftovers(folders.data);
    removeLeftovers(folders.preferences);
    removeLeftovers(folders.backups);
    const HistoryDisk historyDisk{m_files, m_documents, m_scheduler, m_clock};
    return {m_clock,
            m_scheduler,
            m_systemEvents,
            std::make_unique<PreferencesStore>(disk()),
            std::make_unique<ActiveTimerPersistence>(disk()),
            std::make_unique<AddedPreferencesStore>(disk()),
            std::make_unique<SessionStore>(defaultHistoryLocation(folders.applicationSupport), historyDisk),
            std::make_unique<SessionDetailsStore>(defaultSessionDetailsPath(folders.applicationSupport),
                                                  historyDisk),
            std::make_unique<HistoryBackups>(
                BackupPaths{defaultHistoryLocation(folders.applicationSupport).path,
                            defaultSessionDetailsPath(folders.applicationSupport), folders.backups},
                historyDisk),
            std::make_unique<NotificationService>(m_notificationCenter),
            std::make_unique<AlertSoundService>(m_soundPlayer, m_scheduler),
            std::make_unique<LaunchAtLoginService>(m_loginItem),
            TransferParts{m_files, [this]() -> DocumentThread& { return transferThread(); }, timeZoneOf},
            HookParts{std::make_shared<FolderHookPrograms>(folders.preferences + "/hooks"),
                      [this]() -> DocumentThread& {
                          return hookThread();
                      }},
            timeLocale(),
            &m_capsuleController,
            &m_globalShortcuts,
            {&m_notificationSilencer, std::make_unique<SilenceNoteStore>(disk())}};
}

std::unique_ptr<DesktopNotificationCenter> Composition::Parts::makeCenter()
{
    auto center = std::make_unique<DesktopNotificationCenter>(
        std::make_unique<DBusNotificationServer>(m_sessionBus), m_clock, m_scheduler);
    letAnnouncementsThrough(*center);
    return center;
}

// Whatever the program shows is seen, also while it silences the desktop.
void Composition::Parts::letAnnouncementsThrough(DesktopNotificationCenter& center)
{
    center.setGate([this](std::function<void()> show) { m_model.focusQuiet().announce(std::move(show)); });
}

// Beside the announcements of the timer, so that neither takes the other's place on the screen.
UserNotificationCenter& Composition::Parts::absenceCenter()
{
    if (!m_absenceCenter) {
        m_absenceCenter = makeCenter();
    }
    return *m_absenceCenter;
}

// Of the notification that has just been chosen.
std::string Composition::Parts::activationToken() const
{
    const std::string& token = m_notificationCenter.activationToken();
    return token.empty() && m_absenceCenter ? m_absenceCenter->activationToken() : token;
}

DocumentThread& Composition::Parts::transferThread()
{
    if (!m_transfers) {
        m_transfers = std::make_unique<DocumentWorker>();
    }
    return *m_transfers;
}

DocumentThread& Composition::Parts::hookThread()
{
    if (!m_hooks) {
        m_hooks = std::make_unique<DocumentWorker>();
    }
    return *m_hooks;
}

ImportDesk::Parts Composition::Parts::importParts()
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
    return {m_files, m_documents, m_clock, records, adopt, holds};
}

RemoteControl::Actions Composition::Parts::remoteActions()
{
    const auto show = [this](const std::string& section, const std::string& token) {
        if (section == "settings") {
            m_settingsWindow.present(token);
            return;
        }
        // The focus screen bears the timer's name within.
        if (const auto known = fromRawValue<AppSection>(section == "focus" ? "timer" : section)) {
            m_selection.select(*known);
        }
        showWindow(token);
    };
    return {show, [this] {
                m_quitSequence.begin(QuitSequence::Origin::user);
            }};
}

void Composition::Parts::connectQuitting(const Application& application)
{
    const auto quit = [this] {
        m_quitSequence.begin(QuitSequence::Origin::user);
    };
    QObject::connect(&m_window, &MainWindow::quitRequested, &m_quitSequence, quit);
    QObject::connect(&m_settingsWindow, &SettingsWindow::quitRequested, &m_quitSequence, quit);
    QObject::connect(&m_tray, &Tray::quitRequested, &m_quitSequence, quit);
    QObject::connect(&m_terminationSignals, &TerminationSignals::received, &m_quitSequence,
                     [this] { m_quitSequence.begin(QuitSequence::Origin::system); });
    QObject::connect(&application, &Application::endRequested, &m_quitSequence,
                     [this] { m_quitSequence.begin(QuitSequence::Origin::system); });
    // The session manager takes the return for the answer. It may still call the end off.
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &m_quitSequence,
        [this](QSessionManager& /*manager*/) { m_quitSequence.finishNow(); }, Qt::DirectConnection);
    QObject::connect(&m_quitSequence, &QuitSequence::began, &m_window, [this] {
        m_instance.retire();
        m_firstShow.reset();
        m_settingsWindow.close();
        m_window.close();
    });
    QObject::connect(&m_quitSequence, &QuitSequence::finished, &application, [] { QApplication::exit(); });
}

void Composition::Parts::followAppearance(FirstShow firstShow)
{
    m_wasDark = m_windowStore.wasDark();
    const auto last = m_wasDark.value_or(false) ? ColorScheme::dark : ColorScheme::light;
    showColors(m_wasDark ? last : m_desktopScheme);
    if (firstShow == FirstShow::whenAsked) {
        m_messagePresenter.start();
        m_desktopSettings.setChangeHandler([this] { applyAppearance(); });
        return;
    }
    m_firstShow =
        m_scheduler.after(m_wasDark ? Seconds::zero() : longestWaitForAppearance, [this] { showFirst(); });
    m_desktopSettings.setChangeHandler([this] {
        applyAppearance();
        if (m_firstShow) {
            showFirst();
        }
    });
}

void Composition::Parts::applyAppearance()
{
    const auto wanted = m_desktopSettings.colorScheme();
    showColors(wanted ? schemeOf(*wanted) : m_desktopScheme);
    const bool isDark = m_shownScheme == ColorScheme::dark;
    if (std::exchange(m_wasDark, isDark) != isDark) {
        [[maybe_unused]] const auto saved = m_windowStore.saveIsDark(isDark); // a convenience
    }
    m_style->setReducesMotion(m_desktopSettings.reducesMotion());
}

void Composition::Parts::showColors(ColorScheme scheme)
{
    if (std::exchange(m_shownScheme, scheme) != scheme) {
        QApplication::setPalette(Theme::palette(scheme));
    }
}

// Whether a new window gets the keyboard is the window manager's to say: the program may have been started at
// login.
void Composition::Parts::showFirst()
{
    m_firstShow.reset();
    m_window.show();
    m_messagePresenter.start();
}

// The sections of the window are the actions, and the verbs of the timer, for which no window opens.
void Composition::Parts::follow(const InstanceRequest& request)
{
    if (request.action == QLatin1String(InstanceRequest::background)) {
        return;
    }
    if (const auto verb = fromRawValue<TimerVerb>(request.action.toStdString())) {
        m_remoteControl.carryOut(*verb);
        return;
    }
    if (const auto section = fromRawValue<AppSection>(request.action.toStdString())) {
        m_selection.select(*section);
    }
    showWindow(request.token.toStdString());
}

void Composition::Parts::follow(const ApplicationInstance::Command& command,
                                const ApplicationInstance::Answer& answer)
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

void Composition::Parts::showWindow(const std::string& activationToken)
{
    m_firstShow.reset();
    m_window.present(activationToken);
    m_messagePresenter.start();
    if (m_messageCenter) {
        m_messageCenter->removeAllDelivered();
    }
}

// On a centre of its own, too.
void Composition::Parts::notify(const std::string& title, const std::string& text)
{
    if (!m_messageCenter) {
        m_messageCenter = makeCenter();
        m_messageCenter->setResponseHandler([this](const NotificationResponse& response) {
            if (response.actionIdentifier == defaultNotificationActionIdentifier) {
                showWindow(m_messageCenter->activationToken());
            }
        });
    }
    NotificationRequest request;
    request.identifier = "brevlin.message";
    request.title = title;
    request.body = text;
    request.requestedAt = m_clock.now();
    m_messageCenter->add(request, [](const Expected<void, std::string>& /*shown*/) {});
}

Composition::Composition(Application& application, BusStart& buses, const UserFolders& folders,
                         ApplicationInstance& instance, FirstShow firstShow)
    : m_parts(std::make_unique<Parts>(application, buses, folders, instance, firstShow))
{}

Composition::~Composition() = default;

} // namespace brevlin
