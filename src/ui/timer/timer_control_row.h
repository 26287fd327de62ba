#pragma once

#include "core/timer_vocabulary.h"
#include "ui/style/symbol.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

class QShortcut;
class QVBoxLayout;

namespace brevlin {

class AppModel;
class CapsuleButton;

enum class TimerControlStyle { mainWindow, trayPanel };

/// The buttons that the timer's state offers. Space presses the one that goes on with the timer, unless the
/// keyboard is on another button.
class TimerControlRow final : public QWidget
{
    Q_OBJECT

public:
    TimerControlRow(AppModel& model, TimerControlStyle style, QWidget* parent = nullptr);
    ~TimerControlRow() override;

    /// The buttons stand in one row, or, where that is wider than this, in several; points.
    void setLongestRow(int width);

private:
    struct Control
    {
        Symbol symbol = Symbol::none;
        QString text;
        bool isPrimary = false;
        bool isOnSpace = false;
        std::function<void()> action;
    };

    std::vector<Control> controls() const;
    void refresh();
    void rebuild(const std::vector<Control>& controls);
    std::vector<CapsuleButton*> newButtons(const std::vector<Control>& controls);
    void arrange();
    void followKeyboard();

    AppModel& m_model;
    TimerControlStyle m_style;
    QVBoxLayout* m_rows;
    int m_longestRow = QWIDGETSIZE_MAX;
    QShortcut* m_space;                    // owned by this widget
    std::vector<CapsuleButton*> m_buttons; // owned by this widget
    std::optional<std::pair<TimerPhase, TimerRunState>> m_shownState;
    std::function<void()> m_spaceAction; // none while nothing is on Space
};

} // namespace brevlin
