#include "app/capsule_choreography.h"

#include "app/app_model.h"
#include "core/time_text.h"

#include <utility>

namespace brevlin {

namespace {

constexpr Seconds collapseDelay{0.14};
constexpr Seconds revealDelay{0.055};
constexpr Seconds islandDelay{0.08};
constexpr Seconds collapsedCircleDelay{0.48};
// An exit that the pointer did not really make: a resize under it, a rounded corner.
constexpr double exitTolerance = 2.0;

} // namespace

CapsuleChoreography::CapsuleChoreography(Capsule& capsule, TaskScheduler& scheduler, AppModel& model)
    : m_capsule(capsule)
    , m_scheduler(scheduler)
    , m_model(model)
    , m_showsWhileRunning(model.preferences().showTopCapsuleWhileRunning)
{
    m_capsule.setObserver({[this](bool isHovering) { setTopCapsuleHovered(isHovering); },
                           [this](CapsuleCommand command) {
                               perform(command);
                           }});
    listen();
    refresh();
}

CapsuleChoreography::~CapsuleChoreography()
{
    m_capsule.setObserver({});
}

void CapsuleChoreography::listen()
{
    connect(&m_model, &AppModel::commandReceived, this, &CapsuleChoreography::prepareFor);
    connect(&m_model, &AppModel::commandCarriedOut, this, &CapsuleChoreography::follow);
    connect(&m_model, &AppModel::phaseEnded, this, &CapsuleChoreography::showEnd);
    connect(&m_model, &AppModel::pendingPhaseSkipped, this, [this](TimerPhase skipped) {
        presentCompletion({*completionTitle(skipped, SessionOutcome::skipped, m_model.language())});
    });
    connect(&m_model, &AppModel::preferencesChanged, this, &CapsuleChoreography::followPreferences);
    connect(&m_model, &AppModel::defaultPreferencesRestored, this, [this] {
        foldTimerCapsule();
        refresh();
    });
    // Not at snapshotChanged, which comes before the phase that has ended is told.
    for (const auto signal :
         {&AppModel::transitionApplied, &AppModel::alertSoundPlayingChanged, &AppModel::ticked}) {
        connect(&m_model, signal, this, &CapsuleChoreography::refresh);
    }
}

void CapsuleChoreography::prepareFor(TimerCommand command)
{
    switch (command) {
    case TimerCommand::start:
    case TimerCommand::endCurrentPhase:
    case TimerCommand::switchToNextPhase:
    case TimerCommand::undo:
        clearMorphState();
        break;
    case TimerCommand::advance:
        beginCompletionCollapse();
        break;
    case TimerCommand::skipPendingPhase:
    case TimerCommand::dismissCompletion:
        m_morphTask.reset();
        break;
    case TimerCommand::pause:
    case TimerCommand::resume:
    case TimerCommand::addTime:
        break;
    }
}

void CapsuleChoreography::follow(TimerCommand command)
{
    if (command == TimerCommand::advance) {
        finishCompletionCollapse();
    } else if (command == TimerCommand::dismissCompletion) {
        clearMorphState();
        m_capsule.hide();
    }
}

void CapsuleChoreography::showEnd(const FinishedSession& finished)
{
    const auto headline = completionTitle(finished.phase, finished.outcome, m_model.language());
    // Where the next phase started by itself there is nothing to decide, so no island.
    const bool isForTheUser = !isCompletion(finished.outcome) || isRinging();
    if (headline && isForTheUser) {
        presentCompletion({*headline});
    } else if (headline || finished.outcome == SessionOutcome::switchedEarly) {
        clearMorphState();
    }
}

void CapsuleChoreography::followPreferences()
{
    const bool shows = m_model.preferences().showTopCapsuleWhileRunning;
    if (std::exchange(m_showsWhileRunning, shows) && !shows) {
        foldTimerCapsule();
    }
    refresh();
}

bool CapsuleChoreography::isRinging() const
{
    return m_model.snapshot().runState == TimerRunState::ringing;
}

bool CapsuleChoreography::timerIsToBeShown() const
{
    return m_model.preferences().showTopCapsuleWhileRunning &&
           m_model.snapshot().runState != TimerRunState::idle;
}

CapsuleChoreography::Shown CapsuleChoreography::wantedState() const
{
    bool wantsCompletion = false;
    if (m_forcesCompactMorph) {
        if (m_keepsCapsuleVisibleForMorph) {
            return Shown::timer;
        }
    } else if (m_completionPresentation) {
        wantsCompletion = true;
    } else {
        wantsCompletion = isRinging();
        if (m_keepsCapsuleVisibleForMorph && !wantsCompletion) {
            return Shown::timer;
        }
    }
    if (wantsCompletion) {
        return Shown::completion;
    }
    return timerIsToBeShown() ? Shown::timer : Shown::nothing;
}

void CapsuleChoreography::refresh()
{
    const Shown shown = wantedState();
    if (shown == Shown::nothing) {
        m_capsule.hide();
        return;
    }
    m_showsCompletion = shown == Shown::completion;
    if (m_capsule.isVisible()) {
        m_capsule.update(content(shown), layout(shown));
    } else {
        m_capsule.show(content(shown), layout(shown));
    }
}

double CapsuleChoreography::expandedWidth() const
{
    return m_model.isAlertSoundPlaying() ? CapsuleLayouts::soundingTimerWidth
                                         : CapsuleLayouts::expandedTimerWidth;
}

CapsuleLayout CapsuleChoreography::layout(Shown shown) const
{
    if (shown == Shown::completion) {
        return m_isCompletionMinimized
                   ? CapsuleLayouts::capsule(CapsuleLayouts::circleDiameter, HorizontalAnchor::center)
                   : CapsuleLayouts::island;
    }
    return CapsuleLayouts::capsule(m_isTimerCapsuleExpanded ? expandedWidth()
                                                            : CapsuleLayouts::circleDiameter,
                                   m_timerCapsuleExpansionAnchor);
}

CapsuleContent CapsuleChoreography::content(Shown shown) const
{
    const TimerSnapshot& snapshot = m_model.snapshot();
    CapsuleContent result;
    result.phase = snapshot.phase;
    result.runState = snapshot.runState;
    result.clockText = TimeText::clock(m_model.remainingSeconds());
    result.progress = m_forcesCompactMorph ? 0.0 : m_model.progress();
    result.endTimeText = m_model.endTimeText();
    result.cycleSummaryText = m_model.cycleSummaryText();
    result.intention = m_model.snapshot().intention.value_or(std::string{});
    result.language = m_model.language();
    result.appearance = m_model.preferences().topTimerAppearance;
    result.showsCompletion = shown == Shown::completion;
    result.showsMinimizedCompletion = result.showsCompletion && m_isCompletionMinimized;
    result.showsCompactTimer = shown == Shown::timer && !m_isTimerCapsuleExpanded;
    result.revealsExpandedTimerContent = m_revealsExpandedTimerContent;
    result.showsProgressBorder = !m_forcesCompactMorph && snapshot.isActive();
    if (m_completionPresentation) {
        result.completionTitle = m_completionPresentation->title;
    }
    result.isAlertSoundPlaying = m_model.isAlertSoundPlaying();
    return result;
}

void CapsuleChoreography::setTopCapsuleHovered(bool isHovering)
{
    m_capsuleHoverTask.reset();
    if (m_completionPresentation || isRinging() || m_forcesCompactMorph) {
        return;
    }
    if (isHovering) {
        if (!m_isTimerCapsuleExpanded) {
            m_timerCapsuleExpansionAnchor = m_capsule.preferredExpansionAnchor(expandedWidth());
            m_revealsExpandedTimerContent = false;
            m_isTimerCapsuleExpanded = true;
            refresh();
        }
        scheduleExpandedTimerContentReveal();
    } else if (m_isTimerCapsuleExpanded) {
        m_capsuleContentRevealTask.reset();
        m_capsuleHoverTask = m_scheduler.after(collapseDelay, [this] { collapseAfterExit(); });
    }
}

void CapsuleChoreography::collapseAfterExit()
{
    if (!m_capsule.hasPointerWithin(exitTolerance)) {
        m_revealsExpandedTimerContent = false;
        m_isTimerCapsuleExpanded = false;
        refresh();
    }
}

void CapsuleChoreography::scheduleExpandedTimerContentReveal()
{
    if (m_revealsExpandedTimerContent) {
        return;
    }
    m_capsuleContentRevealTask.reset();
    if (m_timerCapsuleExpansionAnchor == HorizontalAnchor::trailing) {
        m_revealsExpandedTimerContent = true;
        refresh();
        return;
    }
    m_capsuleContentRevealTask = m_scheduler.after(revealDelay, [this] {
        if (m_isTimerCapsuleExpanded && !m_completionPresentation && !isRinging()) {
            m_revealsExpandedTimerContent = true;
            refresh();
        }
    });
}

void CapsuleChoreography::resetToCircle()
{
    m_morphTask.reset();
    m_capsuleHoverTask.reset();
    m_capsuleContentRevealTask.reset();
    m_isTimerCapsuleExpanded = false;
    m_revealsExpandedTimerContent = false;
    m_isCompletionMinimized = false;
    m_timerCapsuleExpansionAnchor = HorizontalAnchor::center;
}

void CapsuleChoreography::presentCompletion(const CompletionPresentation& presentation)
{
    resetToCircle();
    if (m_capsule.isVisible()) {
        m_forcesCompactMorph = false;
        m_keepsCapsuleVisibleForMorph = false;
        m_completionPresentation = presentation;
        refresh();
        return;
    }
    m_completionPresentation.reset();
    m_forcesCompactMorph = true;
    m_keepsCapsuleVisibleForMorph = true;
    refresh();
    m_morphTask = m_scheduler.after(islandDelay, [this, presentation] {
        m_completionPresentation = presentation;
        m_forcesCompactMorph = false;
        m_keepsCapsuleVisibleForMorph = false;
        refresh();
    });
}

void CapsuleChoreography::beginCompletionCollapse()
{
    resetToCircle();
    m_completionPresentation.reset();
    m_forcesCompactMorph = true;
    m_keepsCapsuleVisibleForMorph = true;
    refresh();
}

void CapsuleChoreography::finishCompletionCollapse()
{
    const auto letGo = [this] {
        m_forcesCompactMorph = false;
        m_keepsCapsuleVisibleForMorph = false;
        refresh();
    };
    if (timerIsToBeShown()) {
        letGo();
    } else {
        m_morphTask = m_scheduler.after(collapsedCircleDelay, letGo);
    }
}

void CapsuleChoreography::clearMorphState()
{
    resetToCircle();
    m_completionPresentation.reset();
    m_forcesCompactMorph = false;
    m_keepsCapsuleVisibleForMorph = false;
}

void CapsuleChoreography::foldTimerCapsule()
{
    m_capsuleHoverTask.reset();
    m_capsuleContentRevealTask.reset();
    m_isTimerCapsuleExpanded = false;
    m_revealsExpandedTimerContent = false;
    m_timerCapsuleExpansionAnchor = HorizontalAnchor::center;
}

void CapsuleChoreography::minimizeCompletion()
{
    if (m_completionPresentation || isRinging()) {
        m_isCompletionMinimized = true;
        refresh();
    }
}

void CapsuleChoreography::restoreCompletion()
{
    if (m_completionPresentation || isRinging()) {
        m_isCompletionMinimized = false;
        refresh();
    }
}

void CapsuleChoreography::toggleCompletionSize()
{
    m_isCompletionMinimized ? restoreCompletion() : minimizeCompletion();
}

void CapsuleChoreography::perform(CapsuleCommand command)
{
    switch (command) {
    case CapsuleCommand::primary:
        m_showsCompletion ? m_model.advance() : m_model.performPrimaryAction();
        break;
    case CapsuleCommand::addTime:
        m_model.addFiveMinutes();
        break;
    case CapsuleCommand::skip:
        m_model.switchToNextPhase();
        break;
    case CapsuleCommand::end:
        m_model.endCurrentPhase();
        break;
    case CapsuleCommand::skipPending:
        m_model.skipPendingPhase();
        break;
    case CapsuleCommand::minimize:
        minimizeCompletion();
        break;
    case CapsuleCommand::restore:
        restoreCompletion();
        break;
    case CapsuleCommand::dismiss:
        m_model.dismissCompletion();
        break;
    case CapsuleCommand::stopAlert:
        m_model.stopAlertSound();
        break;
    }
}

} // namespace brevlin
