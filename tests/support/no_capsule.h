#pragma once

#include "app/top_capsule.h"

namespace brevlin::test {

/// For a model without a screen.
class NoCapsule final : public TopCapsule
{
public:
    void refresh() override {}
    void presentCompletion(const CompletionPresentation& /*presentation*/) override {}
    void clearMorphState() override {}
    void cancelMorph() override {}
    void beginCompletionCollapse() override {}
    void finishCompletionCollapse() override {}
    void foldTimerCapsule() override {}
    void hide() override {}
};

} // namespace brevlin::test
