#pragma once

#include "platform/status_item.h"

#include <QMenu>
#include <QSystemTrayIcon>

#include <memory>

namespace brevlin {

/// The menu of rows as one of our own windows.
class StatusPopupMenu final
{
public:
    explicit StatusPopupMenu(std::function<void(const std::string&)> rowChosen);

    void setRows(const std::vector<StatusMenuRow>& rows);
    QMenu& menu() { return m_menu; }

private:
    QMenu m_menu;
    std::vector<StatusMenuRow> m_rows;
    std::function<void(const std::string&)> m_rowChosen;
};

/// The item in a tray of the older kind (https://specifications.freedesktop.org/systemtray-spec/), which
/// embeds a window. Qt decides at the first such object of a run whether it embeds or speaks
/// StatusNotifierItem: none may be made while a host of the latter is there.
class XEmbedStatusItem final : public QObject
{
    Q_OBJECT

public:
    explicit XEmbedStatusItem(QMenu& menu);

    void setPictures(const StatusPictures& pictures);
    void setTexts(const StatusTexts& texts);
    void setVisible(bool isVisible);
    /// Whether a tray has ever taken the window in.
    bool isEmbedded();

Q_SIGNALS:
    void activated(int x, int y);

private:
    QSystemTrayIcon m_icon;
    bool m_wasEmbedded = false;
};

} // namespace brevlin
