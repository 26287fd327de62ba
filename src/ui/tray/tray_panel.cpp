#include "ui/tray/tray_panel.h"

#include "app/app_model.h"
#include "platform/floating_window_system.h"
#include "platform/window_system.h"
#include "ui/controls/popup_frame.h"
#include "ui/controls/spoken_element.h"
#include "ui/main/undo_bar.h"
#include "ui/main/window_placement.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/timer/intention_field.h"
#include "ui/timer/timer_control_row.h"
#include "ui/timer/timer_cycle_indicator.h"
#include "ui/timer/timer_ring_view.h"
#include "ui/tray/more_button.h"
#include "ui/tray/tray_curtain.h"
#include "ui/tray/tray_panel_origin.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace brevlin {

namespace {

constexpr TimerRingMetrics ringMetrics{150, 51, 32, 7};
constexpr int padding = 14;
constexpr int spacing = 13;
constexpr int rowSpacing = 8;
constexpr int ringPadding = 13;
constexpr double cornerRadius = 14;
// The press that closes the panel and the click on the item that it belongs to; milliseconds.
constexpr qint64 sameClick = 400;
// While a button is held somewhere, nobody else can take hold of the pointer.
constexpr int grabInterval = 30; // milliseconds
constexpr int grabAttempts = 100;
// Cinnamon lets others take hold of it during the click, and takes it from them when that ends.
constexpr int grabConfirmations = 20;

constexpr BilingualText panelText{"Brevlin 计时面板", "Brevlin timer panel"};
constexpr BilingualText moreText{"更多", "More"};
constexpr std::array sections{AppSection::history, AppSection::statistics, AppSection::settings,
                              AppSection::about};

} // namespace

TrayPanel::TrayPanel(AppModel& model, WindowSystem& windowSystem, FloatingWindowSystem& panels)
    : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint)
    , m_model(model)
    , m_windowSystem(windowSystem)
    , m_panels(panels)
    , m_more(new MoreButton(this))
{
    if (LayerSurfaces* layers = panels.layers()) {
        m_curtain = std::make_unique<TrayCurtain>(*layers);
        setParent(m_curtain.get(), Qt::Widget);
        connect(m_curtain.get(), &TrayCurtain::pressed, this, &TrayPanel::closeByPress);
    }
    setAttribute(Qt::WA_TranslucentBackground);
    // Before the title, with which newer versions of Qt make the window's interface.
    makeSpokenGroup(
        *this, QAccessible::Window, [this] { return qtText(panelText.in(m_model.language())); },
        [this] { return readableText(*this); });
    setWindowTitle(QStringLiteral("Brevlin"));
    // Holds the keyboard until Tab moves it, so that Space is the timer's.
    setFocusPolicy(Qt::ClickFocus);
    layOut();
    translate();
    connect(m_more, &QAbstractButton::clicked, this, &TrayPanel::showMenu);
    connect(&model, &AppModel::preferencesChanged, this, &TrayPanel::translate);
    setFocus();
}

TrayPanel::~TrayPanel()
{
    setParent(nullptr); // the curtain is this one's, not the other way round
}

void TrayPanel::layOut()
{
    auto* top = new QHBoxLayout;
    top->setSpacing(rowSpacing);
    top->addWidget(new TimerCycleIndicator(m_model, true, Qt::AlignLeft, this));
    top->addStretch();
    top->addWidget(m_more);

    auto* ring = new TimerRingView(m_model, ringMetrics, this);
    ring->setBackdrop(ThemeColor::panelBackground);
    m_more->stackUnder(ring); // is read in the order in which it is seen
    auto* ringRow = new QVBoxLayout;
    const int above = ringPadding - ring->overhang();
    ringRow->setContentsMargins(0, above, 0, above);
    ringRow->addWidget(ring, 0, Qt::AlignHCenter);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);
    column->addLayout(top);
    column->addLayout(ringRow);
    column->addWidget(new IntentionField(m_model, this));
    auto* controls = new TimerControlRow(m_model, TimerControlStyle::trayPanel, this);
    controls->setLongestRow(contentWidth - 2 * padding);
    column->addWidget(controls);
    column->addWidget(new UndoBar(m_model, UndoBar::Place::row, this));
}

void TrayPanel::translate()
{
    const QString more = qtText(moreText.in(m_model.language()));
    m_more->setText(more);
    m_more->setToolTip(more);
}

void TrayPanel::toggle(const QPoint& anchor)
{
    if (isVisible()) {
        hide();
        return;
    }
    if (m_sinceClosingPress.isValid() && m_sinceClosingPress.elapsed() < sameClick) {
        return;
    }
    m_hasShadow = m_windowSystem.isComposited();
    const int margin = m_hasShadow ? popupShadowMargin : 0;
    setContentsMargins(margin, margin, margin, margin);
    const int width = contentWidth + 2 * margin;
    setFixedWidth(width);
    layout()->activate();
    resize(width, sizeHint().height());

    QScreen* screen = QGuiApplication::screenAt(anchor);
    screen = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    const QPoint origin =
        panelOrigin(anchor, contentRect().size(), screen->geometry(), workArea(*screen, m_panels));
    move(origin - contentRect().topLeft());
    if (m_curtain) {
        move(pos() - screen->geometry().topLeft());
        show();
        m_curtain->raise(*screen);
        setFocus(Qt::PopupFocusReason);
        return;
    }
    if (m_panels.pointerSight() == FloatingWindowSystem::PointerSight::uncertain) {
        m_pressWatch = m_windowSystem.watchPresses([this] { closeByPress(); });
    }
    show();
    raise();
    setFocus(Qt::PopupFocusReason);
    m_grabsLeft = grabAttempts;
    m_grabsHeld = 0;
    holdInput();
}

// A panel of the desktop still holds the pointer while the click is under way that opened this; without the
// pointer a click elsewhere would not be heard of.
void TrayPanel::holdInput()
{
    const bool isHeld =
        windowHandle()->setMouseGrabEnabled(true) && windowHandle()->setKeyboardGrabEnabled(true);
    if (m_grabTimer != 0) {
        killTimer(m_grabTimer);
        m_grabTimer = 0;
    }
    m_grabsHeld = isHeld ? m_grabsHeld + 1 : 0;
    if (m_grabsHeld < grabConfirmations && --m_grabsLeft > 0) {
        m_grabTimer = startTimer(grabInterval);
    }
}

// The controls change under an open panel, and may need one row more or less.
bool TrayPanel::event(QEvent* event)
{
    const bool isTaken = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest && isVisible()) {
        resize(width(), sizeHint().height());
    }
    return isTaken;
}

void TrayPanel::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_grabTimer && isVisible()) {
        holdInput();
    }
}

void TrayPanel::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_pressWatch.reset();
    if (m_curtain) {
        m_curtain->lower();
    }
    if (m_grabTimer != 0) {
        killTimer(m_grabTimer);
        m_grabTimer = 0;
    }
}

void TrayPanel::mousePressEvent(QMouseEvent* event)
{
    // Every press comes here while the panel is open; one on the shadow is not on the panel either.
    if (!contentRect().contains(event->position().toPoint())) {
        closeByPress();
        return;
    }
    QWidget::mousePressEvent(event);
}

void TrayPanel::closeByPress()
{
    if (!m_curtain) { // which keeps the press to itself
        m_sinceClosingPress.start();
    }
    hide();
}

void TrayPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel)) {
        hide();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void TrayPanel::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

void TrayPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_hasShadow) {
        clearMask();
    } else {
        setMask(popupMask(rect(), cornerRadius));
    }
}

void TrayPanel::showMenu()
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const AppSection section : sections) {
        if (section == AppSection::about) {
            menu->addSeparator();
        }
        connect(menu->addAction(qtText(title(section, m_model.language()))), &QAction::triggered, this,
                [this, section] {
                    hide();
                    Q_EMIT sectionRequested(section);
                });
    }
    const QPoint corner = m_more->mapToGlobal(QPoint(m_more->width(), m_more->height() + 2));
    menu->popup(corner - QPoint(menu->sizeHint().width(), 0));
}

void TrayPanel::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    if (m_hasShadow) {
        paintPopup(painter, contentRect(), cornerRadius, PopupShadow::soft, theme);
    } else {
        paintMaskedPopup(painter, contentRect(), cornerRadius, theme);
    }
}

} // namespace brevlin
