#pragma once

#include "ui/main/app_section.h"

#include <QWidget>

namespace brevlin {

class AbsenceBar;
class AppModel;
class ScrollView;
class TopBar;
class UndoBar;

/// The content of the main window: the top bar above the screen of the selected section, and between them a
/// question that waits for its answer. Each selection makes its screen afresh. On a desktop that is too small
/// for a screen, that is scrolled.
class RootView final : public QWidget
{
    Q_OBJECT

public:
    RootView(AppModel& model, SectionSelection& selection, QWidget* parent = nullptr);

    TopBar& topBar() { return *m_topBar; }
    /// Corners of this radius are left to what lies behind; 0 for a square view.
    void setCornerRadius(double radius);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void showSection();
    void makeStatistics();
    void makeHistory();
    void layOut();
    QRect roomBelow(const QRect& room);
    void scrollDetail();

    AppModel& m_model;
    SectionSelection& m_selection;
    TopBar* m_topBar; // owned by this widget, as are the next three
    AbsenceBar* m_absenceBar;
    UndoBar* m_undoBar;
    QWidget* m_detail = nullptr;
    ScrollView* m_scroller = nullptr; // owns the detail; none while that has had room enough
    double m_cornerRadius = 0.0;
};

} // namespace brevlin
