#include "composition.h"

#include "app/absence_announcer.h"
#include "app/app_model.h"
#include "app/capsule_choreography.h"
#include "appearance.h"
#include "application.h"
#include "desktop_parts.h"
#include "notification_centers.h"
#include "platform/freedesktop/bus/bus_start.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "platform/freedesktop/clock/time_locale.h"
#include "platform/freedesktop/event_loop/sudden_exit.h"
#include "platform/freedesktop/files/leftovers.h"
#include "platform/freedesktop/files/user_folders.h"
#include "platform/freedesktop/hooks/folder_hook_programs.h"
#include "requests.h"
#include "storage/capsule_position.h"
#include "storage/main_window_store.h"
#include "storage/silence_note.h"
#include "ui/capsule/top_panel_controller.h"
#include "ui/main/app_section.h"
#include "ui/main/message_presenter.h"
#include "ui/main/quit_sequence.h"
#include "ui/main/windows.h"
#include "ui/style/application_icon.h"
#include "ui/tray/tray.h"

#include <QSessionManager>

#include <malloc.h>

#include <optional>
#include <utility>

namespace brevlin {

namespace {

// What nobody looks for in the first moment waits until the window has been painted.
constexpr Seconds quietMoment{0.2};

} // namespace

class Composition::Parts final
{
public:
    Parts(Application& application, BusStart& buses, const UserFolders& folders,
          ApplicationInstance& instance, FirstShow firstShow);
    ~Parts()
    {
        m_centers.setGate({});
        m_centers.timer().setBannerPlaceHandler({});
        m_centers.timer().setBannerObstacle({});
        m_desktop.sessionLock.setChangeHandler({});
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

private:
    AppModelParts modelParts(const UserFolders& folders);
    void connectDesktop();
    void connectWindows();
    void connectQuitting(const Application& application, ApplicationInstance& instance);
    void planFirstShow(FirstShow firstShow);
    void showFirst();
    void startRest();
    void showWindow(const std::string& activationToken);

    // What the model and the window borrow stands before them.
    BusStart& m_buses;
    DesktopParts m_desktop;
    NotificationCenters m_centers;
    CapsulePositionStore m_capsulePositionStore;
    TopPanelController m_capsuleController;
    MainWindowStore m_windowStore;
    AppModel m_model;
    AbsenceAnnouncer m_absenceAnnouncer;
    CapsuleChoreography m_capsule;
    SectionSelection m_selection;
    Appearance m_appearance;
    Windows m_windows;
    std::optional<Tray> m_tray; // what comes after the first picture
    MessagePresenter m_messagePresenter;
    QuitSequence m_quitSequence;
    Requests m_requests;
    TaskHandle m_firstShow;
    TaskHandle m_lateStart;
    SuddenExit m_suddenExit;
};

Composition::Parts::Parts(Application& application, BusStart& buses, const UserFolders& folders,
                          ApplicationInstance& instance, FirstShow firstShow)
    : m_buses(buses)
    , m_desktop(buses, folders)
    , m_centers(m_desktop.sessionBus, m_desktop.clock, m_desktop.scheduler)
    , m_capsulePositionStore(m_desktop.disk())
    , m_capsuleController(m_desktop.floatingWindows, m_desktop.sessionLock, m_desktop.scheduler,
                          m_capsulePositionStore)
    , m_windowStore(m_desktop.disk())
    , m_model(modelParts(folders))
    , m_absenceAnnouncer(m_model, [this]() -> UserNotificationCenter& { return m_centers.absences(); })
    , m_capsule(m_capsuleController, m_desktop.scheduler, m_model)
    , m_selection(m_windowStore)
    , m_appearance(m_desktop.desktopSettings, m_windowStore, m_desktop.windowSystem)
    , m_windows(m_model, m_selection, m_windowStore, m_desktop.windowSystem, m_desktop.floatingWindows)
    , m_messagePresenter(m_model.messages(),
                         [this](const std::string& title, const std::string& text) {
                             m_centers.tell(title, text,
                                            [this](const std::string& token) { showWindow(token); });
                         })
    , m_quitSequence(m_model, m_desktop.documents, m_desktop.scheduler)
    , m_requests(m_model, m_desktop, instance)
    , m_suddenExit([this] {
        m_model.blockSignals(true); // no view is to draw on a display that is gone
        m_quitSequence.finishNow();
    })
{
    connectDesktop();
    connectWindows();
    connectQuitting(application, instance);
    planFirstShow(firstShow);
    m_desktop.loginItem.followProgram();
    m_lateStart = m_desktop.scheduler.after(quietMoment, [this] {
        startRest(); // of a window that nobody sees, too
        QApplication::setWindowIcon(applicationIcon());
        malloc_trim(0); // what the start alone has used
    });
}

AppModelParts Composition::Parts::modelParts(const UserFolders& folders)
{
    removeLeftovers(folders.data);
    removeLeftovers(folders.preferences);
    removeLeftovers(folders.backups);
    const DocumentDisk disk = m_desktop.disk();
    const HistoryDisk historyDisk{m_desktop.files, m_desktop.documents, m_desktop.scheduler, m_desktop.clock};
    const HistoryLocation history = defaultHistoryLocation(folders.applicationSupport);
    const std::string details = defaultSessionDetailsPath(folders.applicationSupport);
    return {
        m_desktop.clock,
        m_desktop.scheduler,
        m_desktop.systemEvents,
        std::make_unique<PreferencesStore>(disk),
        std::make_unique<ActiveTimerPersistence>(disk),
        std::make_unique<AddedPreferencesStore>(disk),
        std::make_unique<SessionStore>(history, historyDisk),
        std::make_unique<SessionDetailsStore>(details, historyDisk),
        std::make_unique<HistoryBackups>(BackupPaths{history.path, details, folders.backups}, historyDisk),
        std::make_unique<NotificationService>(m_centers.timer()),
        std::make_unique<AlertSoundService>(m_desktop.soundPlayer, m_desktop.scheduler),
        std::make_unique<LaunchAtLoginService>(m_desktop.loginItem),
        TransferParts{m_desktop.files, [this]() -> DocumentThread& { return m_desktop.transferThread(); },
                      timeZoneOf},
        HookParts{std::make_shared<FolderHookPrograms>(folders.preferences + "/hooks"),
                  [this]() -> DocumentThread& {
                      return m_desktop.hookThread();
                  }},
        timeLocale(),
        &m_capsuleController,
        &m_desktop.globalShortcuts,
        {&m_desktop.notificationSilencer, std::make_unique<SilenceNoteStore>(disk)}};
}

void Composition::Parts::connectDesktop()
{
    m_desktop.sessionLock.setChangeHandler([this] {
        m_capsuleController.followLock();
        m_model.setSessionLocked(m_desktop.sessionLock.isLocked());
    });
    m_centers.timer().setBannerPlaceHandler(
        [this](const std::optional<BannerPlace>& place) { m_capsuleController.setBannerPlace(place); });
    m_centers.timer().setBannerObstacle([this](const BannerPlace& place) {
        return m_model.isEndPresented() && m_capsuleController.meetsBanners(place);
    });
    // Whatever the program shows is seen, also while it silences the desktop.
    m_centers.setGate([this](std::function<void()> show) { m_model.focusQuiet().announce(std::move(show)); });
    QObject::connect(&m_model.focusQuiet(), &FocusQuiet::ownSilenceChanged, &m_desktop.notificationSilencer,
                     [this](bool isKept) { m_centers.timer().setOwnSilence(isKept); });
}

void Composition::Parts::connectWindows()
{
    QObject::connect(&m_windows, &Windows::made, &m_messagePresenter, &MessagePresenter::addWindow);
    QObject::connect(&m_windows, &Windows::alertSizeRequested, &m_capsule,
                     &CapsuleChoreography::toggleCompletionSize);
    QObject::connect(&m_model, &AppModel::mainWindowActivationRequested, &m_quitSequence,
                     [this](const std::string& token) {
                         showWindow(token.empty() ? m_centers.activationToken() : token);
                     });
    QObject::connect(&m_requests, &Requests::windowWanted, &m_quitSequence,
                     [this](const std::string& section, const std::string& token) {
                         if (const auto known = fromRawValue<AppSection>(section)) {
                             m_selection.select(*known);
                         }
                         showWindow(token);
                     });
    QObject::connect(&m_requests, &Requests::settingsWanted, &m_quitSequence,
                     [this](const std::string& token) { m_windows.presentSettings(token); });
}

void Composition::Parts::connectQuitting(const Application& application, ApplicationInstance& instance)
{
    const auto quit = [this] {
        m_quitSequence.begin(QuitSequence::Origin::user);
    };
    QObject::connect(&m_windows, &Windows::quitRequested, &m_quitSequence, quit);
    QObject::connect(&m_requests, &Requests::quitWanted, &m_quitSequence, quit);
    QObject::connect(&m_desktop.terminationSignals, &TerminationSignals::received, &m_quitSequence,
                     [this] { m_quitSequence.begin(QuitSequence::Origin::system); });
    QObject::connect(&application, &Application::endRequested, &m_quitSequence,
                     [this] { m_quitSequence.begin(QuitSequence::Origin::system); });
    // The session manager takes the return for the answer. It may still call the end off.
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &m_quitSequence,
        [this](QSessionManager& /*manager*/) { m_quitSequence.finishNow(); }, Qt::DirectConnection);
    QObject::connect(&m_quitSequence, &QuitSequence::began, &instance, [this, &instance] {
        instance.retire();
        m_firstShow.reset();
        m_windows.close();
    });
    QObject::connect(&m_quitSequence, &QuitSequence::finished, &application, [] { QApplication::exit(); });
}

void Composition::Parts::planFirstShow(FirstShow firstShow)
{
    if (firstShow == FirstShow::whenAsked) {
        m_messagePresenter.start();
        startRest();
        return;
    }
    QObject::connect(&m_windows, &Windows::painted, &m_quitSequence, [this] { startRest(); });
    if (m_appearance.firstWait() > Seconds::zero()) {
        m_buses.release(); // which tell of the desktop's colours
    }
    m_firstShow = m_desktop.scheduler.after(m_appearance.firstWait(), [this] { showFirst(); });
    m_appearance.setChangeHandler([this] {
        if (m_firstShow) {
            showFirst();
        }
    });
}

// Whether a new window gets the keyboard is the window manager's to say: the program may have been started at
// login.
void Composition::Parts::showFirst()
{
    m_firstShow.reset();
    m_windows.showMain();
    m_messagePresenter.start();
}

void Composition::Parts::startRest()
{
    if (m_tray) {
        return;
    }
    m_buses.release();
    m_tray.emplace(m_model, m_selection, m_desktop.statusItem, m_desktop.windowSystem,
                   m_desktop.floatingWindows);
    QObject::connect(&*m_tray, &Tray::quitRequested, &m_quitSequence,
                     [this] { m_quitSequence.begin(QuitSequence::Origin::user); });
}

void Composition::Parts::showWindow(const std::string& activationToken)
{
    m_firstShow.reset();
    m_windows.presentMain(activationToken);
    m_messagePresenter.start();
    m_centers.takeToldAway();
}

Composition::Composition(Application& application, BusStart& buses, const UserFolders& folders,
                         ApplicationInstance& instance, FirstShow firstShow)
    : m_parts(std::make_unique<Parts>(application, buses, folders, instance, firstShow))
{}

Composition::~Composition() = default;

} // namespace brevlin
