#pragma once

#include <string>

namespace brevlin {

/// What the completion island says when a phase has ended.
struct CompletionPresentation
{
    std::string title;

    bool operator==(const CompletionPresentation&) const = default;
};

/// The floating capsule as the model drives it. It reads what to show from the model.
class TopCapsule
{
public:
    virtual ~TopCapsule() = default;

    /// Shows what is true now; called after every change that can concern the capsule, and on every tick.
    virtual void refresh() = 0;
    /// A phase has ended: grow into the island.
    virtual void presentCompletion(const CompletionPresentation& presentation) = 0;
    /// Forget the island and every transition in progress. Does not refresh.
    virtual void clearMorphState() = 0;
    /// Drop the pending step of a transition, keeping what is shown.
    virtual void cancelMorph() = 0;
    /// The next phase is about to start: shrink the island to a circle; then, once it has started, let go of
    /// it.
    virtual void beginCompletionCollapse() = 0;
    virtual void finishCompletionCollapse() = 0;
    /// Fold an expanded timer capsule at once. Does not refresh.
    virtual void foldTimerCapsule() = 0;
    virtual void hide() = 0;
};

} // namespace brevlin
