#pragma once

#include "app/capsule.h"
#include "core/finished_session.h"
#include "platform/task_scheduler.h"

#include <QObject>

#include <optional>
#include <string>

namespace brevlin {

class AppModel;
enum class TimerCommand;

/// What the completion island says when a phase has ended.
struct CompletionPresentation
{
    std::string title;

    bool operator==(const CompletionPresentation&) const = default;
};

/// Decides what the capsule shows and drives its transitions: the circle of a running timer, the capsule that
/// it widens to under the pointer, the island that announces the end of a phase, and the way from one to the
/// other. It listens to the model and to the pointer. Every operation cancels the delayed steps that it
/// supersedes.
class CapsuleChoreography final : public QObject
{
    Q_OBJECT

public:
    /// Capsule, scheduler and model outlive this object.
    CapsuleChoreography(Capsule& capsule, TaskScheduler& scheduler, AppModel& model);
    ~CapsuleChoreography() override;

    /// Makes the island of an end small, or large again, as its own buttons do; nothing without an end.
    void toggleCompletionSize();

private:
    enum class Shown { nothing, timer, completion };

    void listen();
    void prepareFor(TimerCommand command);
    void follow(TimerCommand command);
    void showEnd(const FinishedSession& finished);
    void followPreferences();
    void setTopCapsuleHovered(bool isHovering);
    void minimizeCompletion();
    void restoreCompletion();
    void perform(CapsuleCommand command);

    void refresh();
    void presentCompletion(const CompletionPresentation& presentation);
    void clearMorphState(); // does not refresh
    void beginCompletionCollapse();
    void finishCompletionCollapse();
    void foldTimerCapsule(); // does not refresh
    Shown wantedState() const;
    bool isRinging() const;
    bool timerIsToBeShown() const;
    double expandedWidth() const;
    CapsuleLayout layout(Shown shown) const;
    CapsuleContent content(Shown shown) const;
    void scheduleExpandedTimerContentReveal();
    void collapseAfterExit();
    void resetToCircle();

    Capsule& m_capsule;
    TaskScheduler& m_scheduler;
    AppModel& m_model;
    bool m_showsWhileRunning; // the preference, as it was
    std::optional<CompletionPresentation> m_completionPresentation;
    TaskHandle m_morphTask;                // the pending step of a completion's transition
    TaskHandle m_capsuleHoverTask;         // the pending collapse after the pointer left
    TaskHandle m_capsuleContentRevealTask; // the pending reveal of the expanded content
    bool m_keepsCapsuleVisibleForMorph = false;
    bool m_forcesCompactMorph = false; // the bare circle, without progress
    bool m_isTimerCapsuleExpanded = false;
    bool m_revealsExpandedTimerContent = false;
    bool m_isCompletionMinimized = false;
    HorizontalAnchor m_timerCapsuleExpansionAnchor = HorizontalAnchor::center;
    bool m_showsCompletion = false; // in the content that was pushed last
};

} // namespace brevlin
