#pragma once

#include "app/capsule_panel.h"
#include "app/top_capsule.h"
#include "platform/task_scheduler.h"

#include <functional>
#include <optional>

namespace brevlin {

class AppModel;

/// Decides what the capsule shows and drives its transitions: the circle of a running timer, the capsule that
/// it widens to under the pointer, the island that announces the end of a phase, and the way from one to the
/// other. Every operation cancels the delayed steps that it supersedes.
class CapsuleChoreography final : public TopCapsule
{
public:
    CapsuleChoreography(CapsulePanel& panel, TaskScheduler& scheduler);
    ~CapsuleChoreography() override;

    /// The model whose timer is shown; it outlives this object or is detached (null) before. Without one
    /// nothing is shown.
    void attach(AppModel* model);

    void refresh() override;
    void presentCompletion(const CompletionPresentation& presentation) override;
    void clearMorphState() override;
    void cancelMorph() override;
    void beginCompletionCollapse() override;
    void finishCompletionCollapse() override;
    void foldTimerCapsule() override;
    void hide() override;

    void setTopCapsuleHovered(bool isHovering);
    void minimizeCompletion();
    void restoreCompletion();
    void perform(CapsuleCommand command);

private:
    enum class Shown { nothing, timer, completion };

    Shown wantedState() const;
    bool isRinging() const;
    bool timerIsToBeShown() const;
    double expandedWidth() const;
    CapsuleLayout layout(Shown shown) const;
    CapsuleContent content(Shown shown) const;
    void scheduleExpandedTimerContentReveal();
    void collapseAfterExit();
    void resetToCircle();

    CapsulePanel& m_panel;
    TaskScheduler& m_scheduler;
    AppModel* m_model = nullptr;
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
