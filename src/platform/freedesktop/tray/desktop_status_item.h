#pragma once

#include "platform/freedesktop/tray/status_bus_menu.h"
#include "platform/freedesktop/tray/status_notifier_host.h"
#include "platform/freedesktop/tray/status_notifier_item.h"
#include "platform/freedesktop/tray/xembed_status_item.h"
#include "platform/status_item.h"

#include <memory>

namespace brevlin {

/// The item wherever this desktop shows one: as StatusNotifierItem where somebody collects those, else in the
/// X server's tray. Changes over when a host comes or goes.
class DesktopStatusItem final : public QObject, public StatusItem
{
    Q_OBJECT

public:
    DesktopStatusItem(MessageBus& bus, TaskScheduler& scheduler);

    void setPictures(const StatusPictures& pictures) override;
    void setTexts(const StatusTexts& texts) override;
    void setMenu(const std::vector<StatusMenuRow>& rows) override;
    bool isSeen() const override;
    void setObserver(Observer observer) override;

private:
    void followHost();
    void tellActivated(int x, int y);
    void tellChosen(const std::string& identifier);
    void showMenu();
    QMenu& popupMenu();

    Observer m_observer;
    StatusPictures m_pictures;
    StatusTexts m_texts;
    bool m_isFilled = false; // with what it shows
    std::vector<StatusMenuRow> m_rows;
    StatusNotifierItem m_item;
    StatusBusMenu m_busMenu;
    StatusNotifierHost m_host;
    // Made when they are needed: most desktops never do.
    std::unique_ptr<StatusPopupMenu> m_popupMenu;
    std::unique_ptr<XEmbedStatusItem> m_xembed;
};

} // namespace brevlin
