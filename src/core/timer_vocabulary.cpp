#include "core/timer_vocabulary.h"

#include <cstddef>

namespace brevlin {

std::string_view title(TimerPhase phase, AppLanguage language)
{
    static constexpr std::array<BilingualText, 3> texts{{
        {"专注", "Focus"},
        {"休息", "Break"},
        {"长休息", "Long Break"},
    }};
    return texts.at(static_cast<std::size_t>(phase)).in(language);
}

std::string_view title(SessionOutcome outcome, AppLanguage language)
{
    static constexpr std::array<BilingualText, 6> texts{{
        {"已完成", "Completed"},
        {"离席完成", "Completed away"},
        {"已跳过", "Skipped"},
        {"已重置", "Reset"},
        {"提前结束", "Ended early"},
        {"提前切换", "Switched early"},
    }};
    return texts.at(static_cast<std::size_t>(outcome)).in(language);
}

std::string_view title(AlertIntensity intensity, AppLanguage language)
{
    static constexpr std::array<BilingualText, 3> texts{{
        {"柔和", "Gentle"},
        {"标准", "Standard"},
        {"强提醒", "Strong"},
    }};
    return texts.at(static_cast<std::size_t>(intensity)).in(language);
}

std::string_view detail(AlertIntensity intensity, AppLanguage language)
{
    static constexpr std::array<BilingualText, 3> texts{{
        {"一次声音与系统通知", "One sound and a system notification"},
        {"通知、声音与顶部胶囊", "Notification, sound, and top capsule"},
        {"时效性通知与最多 60 秒重复声音",
         "Time-sensitive notification and up to 60 seconds of repeating sound"},
    }};
    return texts.at(static_cast<std::size_t>(intensity)).in(language);
}

} // namespace brevlin
