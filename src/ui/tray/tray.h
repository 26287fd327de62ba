#pragma once

#include "ui/main/app_section.h"
#include "ui/tray/tray_pictures.h"

#include <QObject>

#include <memory>
#include <string>

namespace brevlin {

class AppModel;
class FloatingWindowSystem;
class TrayPanel;
class StatusItem;
class WindowSystem;

/// Keeps the status item showing the timer, opens its panel and carries out its menu. The item gets a value
/// only when it differs from the one before, and from second to second only when somebody sees it.
class Tray final : public QObject
{
    Q_OBJECT

public:
    Tray(AppModel& model, SectionSelection& selection, StatusItem& item, WindowSystem& windowSystem,
         FloatingWindowSystem& panels);
    ~Tray() override;

Q_SIGNALS:
    void quitRequested();

private:
    void refresh();
    void paintPictures();
    QPoint clickedAnchor(int x, int y) const;
    QPoint rowAnchor() const;
    void togglePanel(const QPoint& anchor);
    void choose(const std::string& row);
    void openMainWindow(AppSection section);

    AppModel& m_model;
    SectionSelection& m_selection;
    StatusItem& m_item;
    WindowSystem& m_windowSystem;
    FloatingWindowSystem& m_panels;
    std::optional<TrayPictureContent> m_shownPicture;
    bool m_paintsLater = false;
    std::unique_ptr<TrayPanel> m_panel; // made when it is first opened
};

} // namespace brevlin
