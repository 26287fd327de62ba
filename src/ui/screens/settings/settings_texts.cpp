#include "ui/screens/settings/settings_texts.h"

#include "ui/style/text.h"

#include <array>

namespace brevlin {

SentenceAroundNumber durationSentence(TimerPhase phase, AppLanguage language)
{
    static constexpr std::array<BilingualText, 3> titles{{
        {"专注时长", "Focus duration"},
        {"休息", "Break"},
        {"长休息", "Long break"},
    }};
    const QString title = qtText(titles.at(static_cast<std::size_t>(phase)).in(language));
    return language == AppLanguage::english
               ? SentenceAroundNumber{title + QStringLiteral(": "), QStringLiteral(" min")}
               : SentenceAroundNumber{title + QStringLiteral("："), QStringLiteral(" 分钟")};
}

SentenceAroundNumber longBreakIntervalSentence(AppLanguage language)
{
    return language == AppLanguage::english
               ? SentenceAroundNumber{QStringLiteral("Long break every "), QStringLiteral(" Pomodoros")}
               : SentenceAroundNumber{QStringLiteral("每 "), QStringLiteral(" 个番茄后长休息")};
}

NotificationStatus notificationStatus(NotificationAuthorizationState state, AppLanguage language)
{
    static constexpr BilingualText notRequested{"尚未请求系统通知", "Notification permission not requested"};
    static constexpr BilingualText disabled{"系统通知已关闭", "Notifications disabled"};
    static constexpr BilingualText enabled{"系统通知已开启", "Notifications enabled"};
    static constexpr BilingualText checking{"正在读取通知状态", "Checking notification status"};
    using State = NotificationAuthorizationState;
    switch (state) {
    case State::notDetermined:
        return {Symbol::bellSlashFill, notRequested.in(language), true};
    case State::denied:
        return {Symbol::bellSlashFill, disabled.in(language), true};
    case State::authorized:
    case State::provisional:
        return {Symbol::bellBadgeFill, enabled.in(language), false};
    case State::unknown:
        break;
    }
    return {Symbol::bellSlashFill, checking.in(language), false};
}

bool strongAlertIsWeakened(AlertIntensity intensity, const NotificationAuthorizationSnapshot& authorization)
{
    return intensity == AlertIntensity::strong && !authorization.timeSensitiveEnabled;
}

std::string_view nativeName(AppLanguage language)
{
    return BilingualText{"简体中文", "English"}.in(language);
}

QString recordsToBeDeleted(std::size_t count, AppLanguage language)
{
    if (language == AppLanguage::simplifiedChinese) {
        return QStringLiteral("将删除 %1 条记录。").arg(count);
    }
    return count == 1 ? QStringLiteral("1 record will be deleted.")
                      : QStringLiteral("%1 records will be deleted.").arg(count);
}

QString recordCount(std::size_t count, AppLanguage language)
{
    const QString number = QString::number(count);
    return language == AppLanguage::simplifiedChinese ? number + QStringLiteral(" 条记录")
           : count == 1                               ? number + QStringLiteral(" record")
                                                      : number + QStringLiteral(" records");
}

QString transferErrorText(const TransferError& error, AppLanguage language)
{
    const QString sentence = qtText(error.sentence.in(language));
    return error.description.empty() ? sentence : sentence + u'\n' + qtText(error.description);
}

} // namespace brevlin
