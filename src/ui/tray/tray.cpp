#include "ui/tray/tray.h"

#include "app/app_model.h"
#include "platform/floating_window_system.h"
#include "platform/window_system.h"
#include "ui/main/window_placement.h"
#include "ui/tray/tray_panel.h"
#include "ui/tray/tray_panel_origin.h"
#include "ui/tray/tray_texts.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <utility>

namespace brevlin {

namespace {

TrayPictureContent pictureContent(const AppModel& model)
{
    const TimerSnapshot& snapshot = model.snapshot();
    TrayPictureContent content{snapshot.phase, std::nullopt, snapshot.runState == TimerRunState::paused};
    if (snapshot.runState != TimerRunState::idle) {
        // Rounded up, as the clock is: the last minute is 1, and 0 says that the time is over.
        content.minutes = static_cast<std::int64_t>(std::ceil(model.remainingSeconds().count() / 60.0));
    }
    return content;
}

const QScreen& screenOf(const QPoint& point)
{
    const QScreen* screen = QGuiApplication::screenAt(point);
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

} // namespace

Tray::Tray(AppModel& model, SectionSelection& selection, StatusItem& item, WindowSystem& windowSystem,
           FloatingWindowSystem& panels)
    : m_model(model), m_selection(selection), m_item(item), m_windowSystem(windowSystem), m_panels(panels)
{
    item.setObserver({[this](int x, int y) { togglePanel(clickedAnchor(x, y)); },
                      [this](const std::string& row) { choose(row); },
                      [this] {
                          refresh();
                          paintPictures();
                      }});
    connect(&model, &AppModel::snapshotChanged, this, &Tray::refresh);
    connect(&model, &AppModel::remainingSecondsChanged, this, [this] {
        if (m_item.isSeen()) {
            refresh();
        }
    });
    connect(&model, &AppModel::preferencesChanged, this, &Tray::refresh);
    paintPictures();
    refresh();
}

Tray::~Tray()
{
    m_item.setObserver({});
}

void Tray::refresh()
{
    m_item.setTexts(trayTexts(m_model));
    m_item.setMenu(trayRows(m_model));
    // They take a millisecond to paint, for which all else that a phase's end brings about does not wait.
    if (m_shownPicture != pictureContent(m_model) && !std::exchange(m_paintsLater, true)) {
        QMetaObject::invokeMethod(this, &Tray::paintPictures, Qt::QueuedConnection);
    }
}

void Tray::paintPictures()
{
    m_paintsLater = false;
    const TrayPictureContent picture = pictureContent(m_model);
    if (m_shownPicture != picture) {
        m_shownPicture = picture;
        m_item.setPictures(trayPictures(picture));
    }
}

// The point on the screen that a host means. Some have none to give, and some give points where others give
// native pixels: where that differs, the pointer that clicked tells, as far as it can be seen. On Wayland
// some give a place on their own surface.
QPoint Tray::clickedAnchor(int x, int y) const
{
    const QPoint given(x, y);
    if (m_panels.pointerSight() == FloatingWindowSystem::PointerSight::everywhere) {
        return !given.isNull() && qGuiApp->devicePixelRatio() == 1.0 ? given : QCursor::pos();
    }
    const QScreen& screen = screenOf(given);
    if (!given.isNull() && canBeOnBar(given, screen.geometry(), workArea(screen, m_panels))) {
        return given;
    }
    return rowAnchor();
}

// The host's menu leads away from the item. In an X server of a Wayland session the pointer's last event
// still tells the screen; where places are not told at all, nothing does.
QPoint Tray::rowAnchor() const
{
    using enum FloatingWindowSystem::PointerSight;
    const auto sight = m_panels.pointerSight();
    const QPoint pointer = QCursor::pos();
    const QScreen& screen = sight == inside ? *QGuiApplication::primaryScreen() : screenOf(pointer);
    return likelyAnchor(screen.geometry(), workArea(screen, m_panels),
                        sight == everywhere ? std::optional{pointer} : std::nullopt);
}

void Tray::togglePanel(const QPoint& anchor)
{
    if (!m_panel) {
        m_panel = std::make_unique<TrayPanel>(m_model, m_windowSystem, m_panels);
        connect(m_panel.get(), &TrayPanel::sectionRequested, this, &Tray::openMainWindow);
        // What comes to the front then is not to lie behind the panel.
        connect(&m_model, &AppModel::mainWindowActivationRequested, m_panel.get(), &QWidget::hide);
        connect(&m_model.messages(), &AppMessages::appMessageChanged, m_panel.get(), &QWidget::hide);
    }
    m_panel->toggle(anchor);
}

void Tray::choose(const std::string& row)
{
    if (row == openPanelRow) {
        togglePanel(rowAnchor());
    } else if (row == primaryActionRow) {
        m_model.performPrimaryAction();
    } else if (row == quitRow) {
        Q_EMIT quitRequested();
    } else if (const auto section = fromRawValue<AppSection>(row)) {
        openMainWindow(*section);
    }
}

void Tray::openMainWindow(AppSection section)
{
    m_selection.select(section);
    // Once the panel has let go of the keyboard.
    QMetaObject::invokeMethod(
        &m_model, [this] { m_model.activateMainWindow(); }, Qt::QueuedConnection);
}

} // namespace brevlin
