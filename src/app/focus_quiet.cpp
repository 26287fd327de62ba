#include "app/focus_quiet.h"

#include <QPointer>

#include <utility>

namespace brevlin {

namespace {

constexpr Seconds longestFarewell{0.5};

} // namespace

FocusQuiet::FocusQuiet(QuietParts parts, TaskScheduler& scheduler)
    : m_parts(std::move(parts)), m_scheduler(scheduler)
{
    if (m_parts.silencer != nullptr) {
        m_parts.silencer->setObserver({[this] { switchChanged(); },
                                       [this] {
                                           wasTurned();
                                       }});
        m_parts.note->setObserver({[this](const std::optional<SilenceNote>& note) { noteWasRead(note); },
                                   [this] {
                                       noteIsSaved();
                                   }});
    }
}

FocusQuiet::~FocusQuiet()
{
    if (m_parts.silencer != nullptr) {
        m_parts.silencer->setObserver({});
    }
}

void FocusQuiet::start()
{
    if (m_parts.silencer != nullptr) {
        m_parts.note->read();
    }
}

void FocusQuiet::noteWasRead(const std::optional<SilenceNote>& note)
{
    m_isNoteKnown = true;
    if (note) {
        m_silenced = Switch{note->switchName, Lasts::always};
        m_parts.silencer->look();
        Q_EMIT ownSilenceChanged(true);
    }
    settle();
}

void FocusQuiet::setEnabled(bool isEnabled)
{
    if (std::exchange(m_isEnabled, isEnabled) != isEnabled) {
        m_isLeftToUser = false;
        settle();
    }
}

void FocusQuiet::follow(const TimerSnapshot& snapshot)
{
    if (std::exchange(m_session, snapshot.sessionID) != snapshot.sessionID) {
        m_isLeftToUser = false;
    }
    m_isFocusRunning = snapshot.phase == TimerPhase::focus && snapshot.runState == TimerRunState::running;
    settle();
}

void FocusQuiet::announce(std::function<void()> show)
{
    if (m_isEnabled || m_silenced) {
        m_moment = m_scheduler.after(announcementMoment, [this] {
            m_moment.reset();
            settle();
        });
    }
    if (!m_silenced) {
        show();
        return;
    }
    m_waiting.push_back(std::move(show));
    m_patience = m_scheduler.after(announcementPatience, [this] { showAnnouncements(); });
    settle();
}

void FocusQuiet::showAnnouncements()
{
    m_patience.reset();
    for (const auto& show : std::exchange(m_waiting, {})) {
        show();
    }
}

void FocusQuiet::end()
{
    m_isEnding = true;
    if (m_silenced) {
        m_endPatience = m_scheduler.after(endPatience, [this] { m_hasWaitedEnough = true; });
    }
    settle();
}

void FocusQuiet::giveBackNow()
{
    if (!m_silenced) {
        return;
    }
    ++m_step; // whatever is under way
    m_isBusy = false;
    m_isLeftToUser = true;
    if (m_isNoteAwaited || m_parts.silencer->giveBackNow(m_silenced->name, longestFarewell)) {
        putDown();
    }
}

NotificationSilencer::Support FocusQuiet::support() const
{
    return m_parts.silencer != nullptr ? m_parts.silencer->support() : NotificationSilencer::Support::none;
}

void FocusQuiet::look()
{
    if (m_parts.silencer != nullptr) {
        m_parts.silencer->look();
    }
}

bool FocusQuiet::isWanted() const
{
    return m_isEnabled && m_isFocusRunning && !m_isLeftToUser && !m_isEnding && !m_moment;
}

bool FocusQuiet::isToBeGivenBack() const
{
    const auto& current = m_parts.silencer->current();
    return !isWanted() || (current && current->name != m_silenced->name);
}

void FocusQuiet::switchChanged()
{
    m_isVerified = false;
    Q_EMIT supportChanged();
    settle();
}

// Whatever it is now is what the user wants.
void FocusQuiet::wasTurned()
{
    if (m_silenced && !m_isBusy) {
        leaveToUser();
    }
}

void FocusQuiet::settle()
{
    if (m_isNoteAwaited && !isWanted()) {
        ++m_step;
        forget(); // the switch was never turned
    }
    if (!m_isNoteKnown || m_isBusy) {
        return;
    }
    if (m_silenced) {
        if (isToBeGivenBack()) {
            giveBack();
        } else if (m_parts.silencer->current() && !m_isVerified) {
            verify();
        }
    } else if (isWanted()) {
        m_parts.silencer->look();
        if (m_parts.silencer->current()) {
            beginSilence();
        }
    }
}

template <typename Function>
auto FocusQuiet::whileBusy(Function function)
{
    m_isBusy = true;
    return [self = QPointer(this), step = ++m_step, function = std::move(function)](auto result) {
        if (self && self->m_step == step) {
            self->m_isBusy = false;
            function(result);
        }
    };
}

void FocusQuiet::beginSilence()
{
    const Switch found = *m_parts.silencer->current();
    m_parts.silencer->readState(found.name, whileBusy([this, found](State state) {
                                    if (m_parts.silencer->current() != found) {
                                        settle();
                                    } else if (state == State::silent) {
                                        m_isLeftToUser = true; // it was the user's before
                                    } else if (state == State::heard && isWanted()) {
                                        noteThenTurn(found);
                                    }
                                }));
}

void FocusQuiet::noteThenTurn(const Switch& found)
{
    m_silenced = found;
    m_isVerified = true;
    Q_EMIT ownSilenceChanged(true);
    if (found.lasts == Lasts::whileProgramRuns) {
        turn();
        return;
    }
    m_isBusy = true;
    m_isNoteAwaited = true;
    if (!m_parts.note->write({found.name})) {
        m_isBusy = false;
        leaveToUser();
    }
}

void FocusQuiet::noteIsSaved()
{
    if (std::exchange(m_isNoteAwaited, false)) {
        turn();
    }
}

void FocusQuiet::turn()
{
    m_parts.silencer->silence(m_silenced->name, whileBusy([this](bool isDone) {
                                  // One that refuses may have turned all the same. One that has died is
                                  // another one.
                                  m_isLeftToUser = m_isLeftToUser || (!isDone && m_isVerified);
                                  settle();
                              }));
}

// After another start, of the program or of the notification server.
void FocusQuiet::verify()
{
    m_silenced = m_parts.silencer->current();
    m_parts.silencer->readState(m_silenced->name, whileBusy([this](State state) {
                                    if (state == State::unknown) {
                                        return;
                                    }
                                    m_isVerified = true;
                                    if (state != State::heard || isToBeGivenBack()) {
                                        settle();
                                    } else if (m_silenced->lasts == Lasts::always) {
                                        leaveToUser();
                                    } else {
                                        turn(); // it was lost with the server
                                    }
                                }));
}

void FocusQuiet::giveBack()
{
    if (m_silenced->lasts == Lasts::whileProgramRuns) {
        turnBack(); // which is nobody's but ours
        return;
    }
    m_parts.silencer->readState(m_silenced->name, whileBusy([this](State state) {
                                    if (state == State::heard || state == State::absent) {
                                        forget();
                                        settle();
                                    } else if (state == State::silent && isToBeGivenBack()) {
                                        turnBack();
                                    } else if (state == State::silent) {
                                        settle();
                                    }
                                    // What could not be told is asked again with the next change.
                                }));
}

void FocusQuiet::turnBack()
{
    m_parts.silencer->giveBack(m_silenced->name, whileBusy([this](bool isDone) {
                                   if (isDone) {
                                       forget();
                                       settle();
                                   }
                               }));
}

void FocusQuiet::leaveToUser()
{
    m_isLeftToUser = true;
    forget();
}

void FocusQuiet::forget()
{
    putDown();
    showAnnouncements();
}

void FocusQuiet::putDown()
{
    m_isBusy = false;
    m_isNoteAwaited = false;
    if (m_silenced->lasts != Lasts::whileProgramRuns) {
        m_parts.note->remove();
    }
    m_silenced.reset();
    m_isVerified = false;
    Q_EMIT ownSilenceChanged(false);
}

} // namespace brevlin
