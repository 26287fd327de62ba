#pragma once

#include "platform/freedesktop/hooks/hook_process.h"
#include "platform/hook_programs.h"

#include <atomic>
#include <string>

namespace brevlin {

/// The executables in a folder, without those whose names begin with a dot or end with a tilde. One that
/// somebody else could have put there or changed is not run.
class FolderHookPrograms final : public HookPrograms
{
public:
    explicit FolderHookPrograms(std::string folder, HookLimits limits = {});

    const std::string& folder() const override { return m_folder; }
    std::vector<HookResult> run(const HookCall& call) override;
    void hurry() override { m_isHurried = true; }

private:
    std::string m_folder;
    HookLimits m_limits;
    std::atomic<bool> m_isHurried{false};
};

} // namespace brevlin
