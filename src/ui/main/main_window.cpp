#include "ui/main/main_window.h"

#include "app/app_model.h"
#include "platform/window_system.h"
#include "ui/main/message_dialog.h"
#include "ui/main/root_view.h"
#include "ui/main/top_bar.h"
#include "ui/main/window_frame.h"
#include "ui/style/text.h"

#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QWindow>

#include <algorithm>

namespace brevlin {

namespace {

constexpr QSize defaultSize{920, 650};
constexpr QSize minimumContentSize{800, 570};
constexpr int saveDelay = 500; // milliseconds from the last change of place or size

constexpr BilingualText minimizeText{"最小化", "Minimize"};
constexpr BilingualText maximizeText{"最大化", "Maximize"};
constexpr BilingualText restoreText{"还原", "Restore"};
constexpr BilingualText fullScreenText{"全屏", "Full Screen"};
constexpr BilingualText closeText{"关闭窗口", "Close Window"};
constexpr BilingualText quitText{"退出 Brevlin", "Quit Brevlin"};

} // namespace

MainWindow::MainWindow(AppModel& model, SectionSelection& selection, MainWindowStore& store,
                       WindowSystem& windowSystem, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinMaxButtonsHint |
                          Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint)
    , m_model(model)
    , m_store(store)
    , m_windowSystem(windowSystem)
    , m_rootView(new RootView(model, selection, this))
    , m_frame(new WindowFrame(*this, windowSystem))
{
    setWindowTitle(QStringLiteral("Brevlin"));
    setWindowRole(QStringLiteral("dashboard"));
    setAttribute(Qt::WA_TranslucentBackground);
    setMouseTracking(true);
    connect(m_frame, &WindowFrame::marginsChanged, this, [this] {
        setMinimumSize(minimumContentSize.grownBy(m_frame->margins()));
        m_rootView->setGeometry(rect().marginsRemoved(m_frame->margins()));
        m_rootView->setCornerRadius(m_frame->hasShadow() ? WindowFrame::cornerRadius : 0.0);
    });
    connectTopBar();
    addShortcuts();
    m_frame->refresh();
    restoreGeometry();
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
    m_normalGeometry = {0, 0, defaultSize.width(), defaultSize.height(), false};
    const auto stored = m_store.geometry();
    if (!stored) {
        placeInCentre(defaultSize);
        return;
    }
    // A screen may have gone since: the window keeps its place only where its title bar can be reached.
    const QSize size = QSize(stored->width, stored->height).expandedTo(minimumContentSize);
    const QRect content(QPoint(stored->x, stored->y), size);
    const QRect bar(content.topLeft(), QSize(content.width(), TopBar::barHeight));
    const auto screens = QGuiApplication::screens();
    const bool canBeReached = std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const QRect visible = screen->availableGeometry().intersected(bar);
        return visible.width() >= TopBar::barHeight * 2 && visible.height() >= TopBar::barHeight / 2;
    });
    if (canBeReached) {
        setGeometry(content.marginsAdded(m_frame->margins()));
    } else {
        placeInCentre(size);
    }
    m_normalGeometry = {content.x(), content.y(), size.width(), size.height(), false};
    m_savedGeometry = *stored;
    if (stored->maximized) {
        setWindowState(Qt::WindowMaximized);
    }
}

void MainWindow::placeInCentre(const QSize& contentSize)
{
    QRect content(QPoint(), contentSize);
    if (const QScreen* primary = QGuiApplication::primaryScreen()) {
        content.moveCenter(primary->availableGeometry().center());
    }
    setGeometry(content.marginsAdded(m_frame->margins()));
}

void MainWindow::rememberGeometry()
{
    if (!m_isPlaced) {
        return;
    }
    const bool isNormal = !isMaximized() && !isFullScreen() && !isMinimized();
    if (isNormal) {
        const QRect content = geometry().marginsRemoved(m_frame->margins());
        m_normalGeometry = {content.x(), content.y(), content.width(), content.height(), false};
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
    }
}

void MainWindow::saveGeometry()
{
    if (m_saveTimer != 0) {
        killTimer(m_saveTimer);
        m_saveTimer = 0;
    }
    if (m_isPlaced && m_normalGeometry != m_savedGeometry && m_store.saveGeometry(m_normalGeometry)) {
        m_savedGeometry = m_normalGeometry;
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
        update();
    }
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
    m_isPlaced = true;
    m_frame->refresh();
}

void MainWindow::paintEvent(QPaintEvent* event)
{
    // The content covers what lies inside.
    if (!rect().marginsRemoved(m_frame->margins()).contains(event->rect())) {
        QPainter painter(this);
        m_frame->paint(painter);
    }
}

} // namespace brevlin
