#include "ui/timer/timer_control_row.h"

#include "app/app_model.h"
#include "app/timer_words.h"
#include "ui/controls/capsule_button.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText fiveMinutes{"+5 分钟", "+5 min"};
constexpr BilingualText endText{"结束", "End"};
constexpr BilingualText switchText{"切换", "Switch"};

int buttonSpacing(TimerControlStyle style, TimerRunState state)
{
    if (style == TimerControlStyle::mainWindow) {
        return 12;
    }
    return state == TimerRunState::idle || state == TimerRunState::ringing ? 8 : 6;
}

} // namespace

TimerControlRow::TimerControlRow(AppModel& model, TimerControlStyle style, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_style(style)
    , m_rows(new QVBoxLayout(this))
    , m_space(new QShortcut(Qt::Key_Space, this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(&model, &AppModel::snapshotChanged, this, &TimerControlRow::refresh);
    connect(&model, &AppModel::preferencesChanged, this, &TimerControlRow::refresh);
    connect(&model, &AppModel::alertSoundPlayingChanged, this, &TimerControlRow::refresh);
    m_space->setAutoRepeat(false);
    connect(m_space, &QShortcut::activated, this, [this] {
        // A copy: the action replaces the controls.
        const std::function<void()> action = m_spaceAction;
        action();
    });
    connect(qApp, &QApplication::focusChanged, this, &TimerControlRow::followKeyboard);
    refresh();
}

// A button that has the keyboard gives it up while it is destroyed, when the shortcut is gone already.
TimerControlRow::~TimerControlRow()
{
    disconnect(qApp, nullptr, this, nullptr);
}

std::vector<TimerControlRow::Control> TimerControlRow::controls() const
{
    const AppLanguage language = m_model.language();
    const TimerSnapshot& snapshot = m_model.snapshot();
    const auto text = [language](const BilingualText& pair) {
        return qtText(pair.in(language));
    };
    AppModel* model = &m_model;

    const Control addTime{Symbol::none, text(fiveMinutes), false, false, [model] {
                              model->addFiveMinutes();
                          }};
    const Control end{Symbol::stopFill, text(endText), false, false, [model] {
                          model->endCurrentPhase();
                      }};
    const Control next{Symbol::forwardEndFill, text(switchText), false, false, [model] {
                           model->switchToNextPhase();
                       }};
    const auto primaryAction = [model] {
        model->performPrimaryAction();
    };
    const QString primaryText =
        qtText(TimerWords::primaryAction(snapshot.phase, snapshot.runState, language));
    switch (snapshot.runState) {
    case TimerRunState::idle:
        return {{Symbol::none, primaryText, true, true, [model] {
                     model->start();
                 }}};
    case TimerRunState::running:
        return {addTime, {Symbol::pauseFill, primaryText, false, true, primaryAction}, end, next};
    case TimerRunState::paused:
        return {addTime, {Symbol::playFill, primaryText, true, true, primaryAction}, end, next};
    case TimerRunState::ringing:
        break;
    }
    std::vector<Control> ringing;
    if (m_model.isAlertSoundPlaying()) {
        ringing.push_back({Symbol::none, text(TimerWords::stopSound), false, false, [model] {
                               model->stopAlertSound();
                           }});
    }
    ringing.push_back(
        {Symbol::none, qtText(TimerWords::skip(snapshot.phase, language)), false, false, [model] {
             model->skipPendingPhase();
         }});
    ringing.push_back({Symbol::none, primaryText, true, false, [model] {
                           model->advance();
                       }});
    return ringing;
}

void TimerControlRow::refresh()
{
    const std::vector<Control> wanted = controls();
    m_spaceAction = {};
    for (const Control& control : wanted) {
        if (control.isOnSpace) {
            m_spaceAction = control.action;
        }
    }
    rebuild(wanted);
    followKeyboard();
}

void TimerControlRow::rebuild(const std::vector<Control>& controls)
{
    // The keyboard stays with its control, or in another state of the timer with the one that goes on with
    // it: left to Qt it would wander to whatever comes next, and Space would then press that.
    std::optional<QString> focused;
    for (const CapsuleButton* button : m_buttons) {
        if (button->hasFocus()) {
            focused = button->text();
        }
    }
    const TimerSnapshot& snapshot = m_model.snapshot();
    const auto state = std::pair{snapshot.phase, snapshot.runState};
    const auto former = std::exchange(m_shownState, state);
    const bool isKept =
        former == state && std::any_of(controls.begin(), controls.end(),
                                       [&](const Control& control) { return control.text == focused; });
    // Qt asks the X server where the pointer is for every button that it shows, and waits: a phase that
    // begins by itself keeps the buttons of the last one.
    const bool isSameRow = former && former->second == snapshot.runState &&
                           std::equal(controls.begin(), controls.end(), m_buttons.begin(), m_buttons.end(),
                                      [](const Control& control, const CapsuleButton* button) {
                                          return control.text == button->text();
                                      });
    const std::vector<CapsuleButton*> gone =
        isSameRow ? std::vector<CapsuleButton*>{} : std::exchange(m_buttons, newButtons(controls));
    for (std::size_t index = 0; index < controls.size(); ++index) {
        const Control& control = controls[index];
        m_buttons[index]->setTint(phaseColor(snapshot.phase));
        if (focused && (isKept ? control.text == focused : control.isOnSpace || control.isPrimary)) {
            m_buttons[index]->setFocus(Qt::TabFocusReason);
        }
    }
    // Not before: hiding the one with the keyboard hands it on at once, and a screen reader says to whom.
    for (CapsuleButton* button : gone) {
        button->hide();
        button->deleteLater();
    }
    if (!isSameRow) {
        arrange();
    }
}

std::vector<CapsuleButton*> TimerControlRow::newButtons(const std::vector<Control>& controls)
{
    const ControlSize size =
        m_style == TimerControlStyle::trayPanel ? ControlSize::compact : ControlSize::regular;
    std::vector<CapsuleButton*> buttons;
    for (const Control& control : controls) {
        auto* button = new CapsuleButton(control.isPrimary ? CapsuleStyle::primary : CapsuleStyle::secondary,
                                         size, this);
        button->setText(control.text);
        button->setSymbol(control.symbol);
        connect(button, &QAbstractButton::clicked, this, control.action);
        button->show(); // now, not from the next turn of the event loop, so that the row is never seen empty
        buttons.push_back(button);
    }
    return buttons;
}

void TimerControlRow::setLongestRow(int width)
{
    m_longestRow = width;
    arrange();
}

// From the last button, which goes on with the timer, so that what it stands with is nearest to it.
void TimerControlRow::arrange()
{
    while (QLayoutItem* row = m_rows->takeAt(0)) {
        delete row;
    }
    const int spacing = buttonSpacing(m_style, m_model.snapshot().runState);
    m_rows->setSpacing(spacing);
    QHBoxLayout* row = nullptr;
    int left = 0;
    for (std::size_t index = m_buttons.size(); index-- > 0;) {
        CapsuleButton* button = m_buttons[index];
        const int width = button->sizeHint().width() + spacing;
        if (row == nullptr || width > left) {
            row = new QHBoxLayout;
            row->setSpacing(spacing);
            row->setAlignment(Qt::AlignCenter);
            m_rows->insertLayout(0, row);
            left = m_longestRow + spacing;
        }
        row->insertWidget(0, button);
        left -= width;
    }
}

void TimerControlRow::followKeyboard()
{
    // A control that the keyboard is on takes Space for itself.
    const QWidget* focused = QApplication::focusWidget();
    const bool isTaken = focused != nullptr && (focused->focusPolicy() & Qt::TabFocus) != 0;
    m_space->setEnabled(m_spaceAction && !isTaken);
}

} // namespace brevlin
