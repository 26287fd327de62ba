#pragma once

#include "ui/main/app_section.h"

#include <QWidget>

#include <vector>

namespace brevlin {

class AppModel;
class LogoButton;
class SectionTab;
class SelectableButton;
class WindowButton;

/// The bar in place of the window's title bar: the window's buttons, the tabs of the sections and the logo
/// that leads to About. What lies free of them moves the window.
class TopBar final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int barHeight = 50;

    TopBar(AppModel& model, SectionSelection& selection, QWidget* parent = nullptr);

    /// Full screen has no window buttons and needs no room for them.
    void setFullScreen(bool isFullScreen);
    void setMaximized(bool isMaximized);
    /// Where Tab comes to them.
    void putWindowButtonsLast();

Q_SIGNALS:
    void closeRequested();
    void minimizeRequested();
    void maximizeRequested();
    /// The pointer was pressed on the bar and moved past the drag distance.
    void moveRequested();
    void menuRequested(const QPoint& globalPosition);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void layOut();
    std::vector<SelectableButton*> sections() const;
    void selectNeighbor(int distance);

    AppModel& m_model;
    SectionSelection& m_selection;
    std::vector<SectionTab*> m_tabs; // in the order of the sections; these are owned by this widget
    LogoButton* m_about = nullptr;
    WindowButton* m_close = nullptr;
    WindowButton* m_minimize = nullptr;
    WindowButton* m_maximize = nullptr;
    bool m_isFullScreen = false;
    bool m_isMaximized = false;
    std::optional<QPoint> m_pressPosition; // global; none once the press has become a move
};

} // namespace brevlin
