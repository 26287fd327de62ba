#include "platform/freedesktop/tray/desktop_status_item.h"

#include <QCursor>
#include <QGuiApplication>

#include <utility>

namespace brevlin {

DesktopStatusItem::DesktopStatusItem(MessageBus& bus, TaskScheduler& scheduler)
    : m_item(bus), m_busMenu(bus, StatusNotifierItem::menuPath), m_host(bus, scheduler)
{
    connect(&m_item, &StatusNotifierItem::activated, this, &DesktopStatusItem::tellActivated);
    connect(&m_item, &StatusNotifierItem::menuRequested, this, &DesktopStatusItem::showMenu);
    connect(&m_item, &StatusNotifierItem::labelAsked, &m_host, &StatusNotifierHost::labelAsked);
    connect(&m_busMenu, &StatusBusMenu::rowChosen, this,
            [this](const QString& identifier) { tellChosen(identifier.toStdString()); });
    connect(&m_host, &StatusNotifierHost::changed, this, &DesktopStatusItem::followHost);
}

void DesktopStatusItem::followHost()
{
    if (!m_isFilled) {
        return;
    }
    if (m_host.isCollecting() && !m_item.isCollected() && m_observer.awaited) {
        m_observer.awaited();
    }
    m_host.offerItem();
    m_item.setIsCollected(m_host.isCollecting());
    m_item.setShowsLabel(m_host.showsLabels());
    const bool isX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    if (m_host.isAbsent() && isX11 && !m_xembed) {
        m_xembed = std::make_unique<XEmbedStatusItem>(popupMenu());
        connect(m_xembed.get(), &XEmbedStatusItem::activated, this, &DesktopStatusItem::tellActivated);
        m_xembed->setPictures(m_pictures);
        m_xembed->setTexts(m_texts);
    }
    if (m_xembed) {
        m_xembed->setVisible(m_host.isAbsent());
    }
}

void DesktopStatusItem::setPictures(const StatusPictures& pictures)
{
    m_pictures = pictures;
    m_item.setPictures(pictures);
    if (!std::exchange(m_isFilled, true)) {
        // Not from here: the rest of what the item shows is still to come.
        QMetaObject::invokeMethod(this, &DesktopStatusItem::followHost, Qt::QueuedConnection);
    }
    if (m_xembed) {
        m_xembed->setPictures(pictures);
    }
}

void DesktopStatusItem::setTexts(const StatusTexts& texts)
{
    m_texts = texts;
    m_item.setTexts(texts);
    if (m_xembed) {
        m_xembed->setTexts(texts);
    }
}

void DesktopStatusItem::setMenu(const std::vector<StatusMenuRow>& rows)
{
    m_rows = rows;
    m_busMenu.setRows(rows);
    if (m_popupMenu) {
        m_popupMenu->setRows(rows);
    }
}

bool DesktopStatusItem::isSeen() const
{
    return m_item.isCollected() || (m_xembed && m_xembed->isEmbedded());
}

void DesktopStatusItem::setObserver(Observer observer)
{
    m_observer = std::move(observer);
}

void DesktopStatusItem::tellActivated(int x, int y)
{
    if (m_observer.activated) {
        m_observer.activated(x, y);
    }
}

void DesktopStatusItem::tellChosen(const std::string& identifier)
{
    if (m_observer.rowChosen) {
        m_observer.rowChosen(identifier);
    }
}

// For hosts that do not draw the menu of the bus.
void DesktopStatusItem::showMenu()
{
    popupMenu().popup(QCursor::pos());
}

QMenu& DesktopStatusItem::popupMenu()
{
    if (!m_popupMenu) {
        m_popupMenu = std::make_unique<StatusPopupMenu>([this](const auto& row) { tellChosen(row); });
        m_popupMenu->setRows(m_rows);
    }
    return m_popupMenu->menu();
}

} // namespace brevlin
