#include "ui/main/main_window.h"

#include "app/app_model.h"
#include "platform/window_system.h"
#include "ui/main/message_dialog.h"
#include "ui/main/root_view.h"
#include "ui/main/top_bar.h"
#include "ui/main/window_frame.h"
#include "ui/main/window_placement.h"
#include "ui/screens/settings/import_dialog.h"
#include "ui/style/text.h"

#include <QAction>
#include <QCloseEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QUrl>
#include <QWindow>

#include <optional>
#include <utility>

namespace brevlin {

namespace {

constexpr QSize defaultSize{920, 650};
constexpr QSize minimumContentSize{800, 570};
constexpr int saveDelay = 500;   // milliseconds from the last change of place or size
constexpr int placedDelay = 300; // milliseconds from the first show

constexpr BilingualText minimizeText{"最小化", "Minimize"};
constexpr BilingualText maximizeText{"最大化", "Maximize"};
constexpr BilingualText restoreText{"还原", "Restore"};
constexpr BilingualText fullScreenText{"全屏", "Full Screen"};
constexpr BilingualText closeText{"关闭窗口", "Close Window"};
constexpr BilingualText quitText{"退出 Brevlin", "Quit Brevlin"};

// One file of this computer; nothing else can be imported.
std::optional<QString> droppedFile(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 && urls.front().isLocalFile() ? std::optional{urls.front().toLocalFile()}
                                                          : std::nullopt;
}

} // namespace

MainWindow::MainWindow(AppModel& model, SectionSelection& selection, MainWindowStore& store,
                       WindowSystem& windowSystem, const FloatingWindowSystem& floatingWindows,
                       QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinMaxButtonsHint |
                          Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint)
    , m_model(model)
    , m_store(store)
    , m_windowSystem(windowSystem)
    , m_floatingWindows(floatingWindows)
    , m_rootView(new RootView(model, selection, this))
    , m_frame(new WindowFrame(*this, windowSystem))
{
    setWindowTitle(QStringLiteral("Brevlin"));
    setWindowRole(QStringLiteral("dashboard"));
    setAttribute(Qt::WA_TranslucentBackground);
    setMouseTracking(true);
    setAcceptDrops(true);
    connect(m_frame, &WindowFrame::marginsChanged, this, [this] {
        updateLeastSize();
        m_rootView->setGeometry(rect().marginsRemoved(m_frame->margins()));
        m_rootView->setCornerRadius(m_frame->hasShadow() ? WindowFrame::cornerRadius : 0.0);
    });
    connectTopBar();
    addShortcuts();
    m_frame->refresh();
    restoreGeometry();
    followScreens();
}

MainWindow::~MainWindow()
{
    saveGeometry();
}

void MainWindow::addShortcuts()
{
    const auto add = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    add(QKeySequence(Qt::CTRL | Qt::Key_Q), &MainWindow::quitRequested);
    add(QKeySequence(Qt::CTRL | Qt::Key_W), &QWidget::close);
    add(QKeySequence(Qt::CTRL | Qt::Key_Comma), &MainWindow::settingsRequested);
    add(QKeySequence(Qt::Key_F11), &MainWindow::toggleFullScreen);
    add(QKeySequence(Qt::CTRL | Qt::Key_Z), [this] { m_model.undo(); });
    add(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), [this] { m_model.historyEditor().redo(); });
    // As the alert's own buttons, which the keyboard does not reach.
    add(QKeySequence(Qt::SHIFT | Qt::Key_Escape), &MainWindow::alertSizeRequested);
    add(QKeySequence(Qt::Key_Escape), [this] {
        if (m_model.isEndPresented()) {
            m_model.dismissCompletion();
        }
    });
}

void MainWindow::connectTopBar()
{
    TopBar& bar = m_rootView->topBar();
    connect(&bar, &TopBar::closeRequested, this, &QWidget::close);
    connect(&bar, &TopBar::minimizeRequested, this, &QWidget::showMinimized);
    connect(&bar, &TopBar::maximizeRequested, this, &MainWindow::toggleMaximized);
    connect(&bar, &TopBar::moveRequested, this, [this] {
        if (!isFullScreen()) {
            windowHandle()->startSystemMove();
        }
    });
    connect(&bar, &TopBar::menuRequested, this, &MainWindow::showWindowMenu);
}

void MainWindow::present(const std::string& activationToken)
{
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    // An alert in front of the window is what the keyboard has to go to.
    const QWidget* alert = findChild<MessageDialog*>();
    const QWidget* front = alert != nullptr ? alert : this;
    m_windowSystem.activate(front->winId(), activationToken);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (droppedFile(*event->mimeData()) && !m_model.isHistoryAwaited()) {
        event->setDropAction(Qt::CopyAction); // whatever the file manager would like best
        event->accept();
    }
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const auto file = droppedFile(*event->mimeData());
    if (file && findChild<ImportDialog*>() == nullptr) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
        auto* dialog = new ImportDialog(m_model, *file, this);
        dialog->show();
    }
}

void MainWindow::toggleMaximized()
{
    if (isFullScreen()) {
        return;
    }
    isMaximized() ? showNormal() : showMaximized();
}

void MainWindow::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void MainWindow::showWindowMenu(const QPoint& globalPosition)
{
    const QPoint native = (QPointF(globalPosition) * devicePixelRatioF()).toPoint();
    if (m_windowSystem.showWindowMenu(winId(), native.x(), native.y())) {
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const BilingualText& text, auto action) {
        connect(menu->addAction(qtText(text.in(m_model.language()))), &QAction::triggered, this, action);
    };
    add(minimizeText, &QWidget::showMinimized);
    add(isMaximized() ? restoreText : maximizeText, &MainWindow::toggleMaximized);
    add(fullScreenText, &MainWindow::toggleFullScreen);
    menu->addSeparator();
    add(closeText, &QWidget::close);
    add(quitText, &MainWindow::quitRequested);
    menu->popup(globalPosition);
}

void MainWindow::restoreGeometry()
{
    m_normalGeometry = {std::nullopt, defaultSize.width(), defaultSize.height(), false};
    if (const auto stored = m_store.geometry()) {
        m_normalGeometry = *stored;
        m_savedGeometry = *stored;
    }
    const std::vector<QRect> areas = freeAreas();
    const QRect content = placedInside(m_normalGeometry, leastSize(), areas);
    setGeometry(content.marginsAdded(m_frame->margins()));
    m_normalGeometry.width = content.width();
    m_normalGeometry.height = content.height();
    if (m_normalGeometry.maximized) {
        setWindowState(Qt::WindowMaximized);
    }
}

// The screens that are there, and those to come.
void MainWindow::followScreens()
{
    const auto follow = [this](const QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &MainWindow::updateLeastSize);
    };
    for (const QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &MainWindow::updateLeastSize);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, follow](const QScreen* screen) {
        follow(screen);
        updateLeastSize();
    });
}

// Where the content may lie. A shadow may reach over the edge of the work area, a hairline is to be seen.
std::vector<QRect> MainWindow::freeAreas() const
{
    std::vector<QRect> areas = workAreas(m_floatingWindows);
    if (!m_frame->hasShadow()) {
        for (QRect& area : areas) {
            area = area.marginsRemoved(m_frame->margins());
        }
    }
    return areas;
}

void MainWindow::updateLeastSize()
{
    setMinimumSize(leastSize().grownBy(m_frame->margins()));
}

// Of the content, so that the whole window has room, its shadow too.
QSize MainWindow::leastSize() const
{
    std::vector<QRect> areas = workAreas(m_floatingWindows);
    for (QRect& area : areas) {
        area = area.marginsRemoved(m_frame->margins());
    }
    return leastSizeOn(areas, minimumContentSize);
}

// MATE's window manager keeps the shadow inside of the work area, too, and moves a window that has no room
// for it: then its lower end gives way.
void MainWindow::cutToWorkArea()
{
    if (isMaximized() || isFullScreen() || isMinimized() || !m_windowSystem.tellsPlaces()) {
        return;
    }
    const QRect content = geometry().marginsRemoved(m_frame->margins());
    for (const QRect& area : freeAreas()) {
        if (area.contains(content.topLeft()) && !area.contains(content)) {
            resize(content.intersected(area).size().grownBy(m_frame->margins()));
        }
    }
}

void MainWindow::rememberGeometry()
{
    if (!m_isPlaced) {
        return;
    }
    const bool isNormal = !isMaximized() && !isFullScreen() && !isMinimized();
    if (isNormal) {
        const QRect content = geometry().marginsRemoved(m_frame->margins());
        if (m_windowSystem.tellsPlaces()) { // else the one that is stored holds for where it means something
            m_normalGeometry.place = WindowPlace{content.x(), content.y()};
        }
        m_normalGeometry.width = content.width();
        m_normalGeometry.height = content.height();
    }
    m_normalGeometry.maximized = isMaximized();
    if (m_saveTimer != 0) {
        killTimer(m_saveTimer);
    }
    m_saveTimer = startTimer(saveDelay);
}

void MainWindow::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_saveTimer) {
        saveGeometry();
    } else if (event->timerId() == m_placedTimer) {
        killTimer(m_placedTimer);
        m_placedTimer = 0;
        cutToWorkArea();
    }
}

void MainWindow::saveGeometry()
{
    if (m_saveTimer != 0) {
        killTimer(m_saveTimer);
        m_saveTimer = 0;
    }
    if (!m_isPlaced) {
        return;
    }
    WindowGeometry geometry = m_normalGeometry;
    if (geometry.place && m_windowSystem.tellsPlaces()) {
        const QRect content(geometry.place->x, geometry.place->y, geometry.width, geometry.height);
        geometry.place = placeToRemember(content, freeAreas());
    }
    if (geometry != m_savedGeometry && m_store.saveGeometry(geometry)) {
        m_savedGeometry = geometry;
    }
}

void MainWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        m_rootView->topBar().setFullScreen(isFullScreen());
        m_rootView->topBar().setMaximized(isMaximized());
        m_frame->refresh();
        rememberGeometry();
    } else if (event->type() == QEvent::ActivationChange) {
        repaintActivity();
    }
}

// What looks otherwise on the active window, beside its buttons: the shadow, which shows behind the content's
// corners, too.
void MainWindow::repaintActivity()
{
    constexpr auto radius = static_cast<int>(WindowFrame::cornerRadius);
    const QRect content = rect().marginsRemoved(m_frame->margins());
    const QRegion unchanged =
        QRegion(content.adjusted(0, radius, 0, -radius)) + content.adjusted(radius, 0, -radius, 0);
    update(QRegion(rect()) - unchanged);
}

bool MainWindow::focusNextPrevChild(bool isNext)
{
    m_rootView->topBar().putWindowButtonsLast();
    return QWidget::focusNextPrevChild(isNext);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // Hidden rather than closed: the timer lives on, and the last window's end does not end the program.
    event->ignore();
    saveGeometry();
    hide();
}

void MainWindow::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    rememberGeometry();
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_rootView->setGeometry(rect().marginsRemoved(m_frame->margins()));
    rememberGeometry();
}

void MainWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!std::exchange(m_isPlaced, true)) {
        m_placedTimer = startTimer(placedDelay);
    }
    m_frame->refresh();
}

void MainWindow::paintEvent(QPaintEvent* event)
{
    if (!std::exchange(m_isPainted, true)) {
        QMetaObject::invokeMethod(this, &MainWindow::painted, Qt::QueuedConnection);
    }
    // The content covers what lies inside.
    if (!rect().marginsRemoved(m_frame->margins()).contains(event->rect())) {
        QPainter painter(this);
        m_frame->paint(painter);
    }
}

} // namespace brevlin
