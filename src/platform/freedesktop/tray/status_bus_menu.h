#pragma once

#include "platform/freedesktop/bus/bus_object.h"
#include "platform/status_item.h"

#include <cstddef>
#include <vector>

namespace brevlin {

/// The item's menu as hosts draw it themselves: com.canonical.dbusmenu
/// (https://github.com/AyatanaIndicators/libdbusmenu/blob/main/libdbusmenu-glib/dbus-menu.xml). What changes
/// every second is announced only while the menu is open, and when it is about to open.
class StatusBusMenu final : public BusInterface
{
    Q_OBJECT

public:
    StatusBusMenu(MessageBus& bus, const QString& path);

    void setRows(const std::vector<StatusMenuRow>& rows);

Q_SIGNALS:
    void rowChosen(const QString& identifier);

protected:
    QVariantMap properties() const override;
    BusAnswer answer(const QString& method, const QVariantList& arguments) override;

private:
    const StatusMenuRow* row(int id) const;
    QVariantMap rowProperties(int id) const;
    QVariantList layout(int parent, int depth) const;
    QVariantList groupProperties(QList<int> ids) const;
    void prepareToShow();
    bool takeEvent(int id, const QString& type);
    void announce(const std::vector<StatusMenuRow>& old);
    void announceRows(const QList<int>& ids);

    BusObject m_object;
    std::vector<StatusMenuRow> m_rows; // the first has the id 1; 0 is the menu itself
    uint m_revision = 1;
    int m_followedUpdates = 0; // how many changes of a second are still announced
    bool m_isOutdated = false; // something changed that was not announced
};

} // namespace brevlin
