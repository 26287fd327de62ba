#include "ui/screens/settings/hook_texts.h"

#include "ui/style/text.h"

#include <QStringList>

#include <array>

namespace brevlin {

namespace {

std::string_view eventText(HookEvent event, AppLanguage language)
{
    static constexpr std::array<BilingualText, 5> texts{{{"阶段开始", "phase started"},
                                                         {"阶段暂停", "phase paused"},
                                                         {"阶段继续", "phase resumed"},
                                                         {"阶段结束", "phase ended"},
                                                         {"阶段跳过", "phase skipped"}}};
    return texts.at(static_cast<std::size_t>(event)).in(language);
}

} // namespace

QString hookSubject(const HookRecord& record, AppLanguage language)
{
    const QString event = qtText(eventText(record.result.event, language));
    return record.kind == HookRecord::Kind::leftOut
               ? event
               : QString::fromStdString(record.result.name) + QStringLiteral(" · ") + event;
}

QString hookOutcome(const HookRecord& record, AppLanguage language)
{
    static constexpr BilingualText leftOut{"等待过多，未运行", "Left out: too many waited"};
    static constexpr BilingualText done{"完成", "Done"};
    static constexpr BilingualText failed{"失败（%1）", "Failed (%1)"};
    static constexpr BilingualText tookTooLong{"超时，已终止", "Took too long, was ended"};
    static constexpr BilingualText unsafe{"他人可修改，未运行", "Not run: others can change it"};
    static constexpr BilingualText notStarted{"无法启动", "Could not start"};
    if (record.kind == HookRecord::Kind::leftOut) {
        return qtText(leftOut.in(language));
    }
    switch (record.result.kind) {
    case HookResult::Kind::done:
        return qtText(done.in(language));
    case HookResult::Kind::failed:
        return qtText(failed.in(language)).arg(record.result.code);
    case HookResult::Kind::tookTooLong:
        return qtText(tookTooLong.in(language));
    case HookResult::Kind::unsafe:
        return qtText(unsafe.in(language));
    case HookResult::Kind::notStarted:
        break;
    }
    return qtText(notStarted.in(language));
}

QString hookOutput(const HookRecord& record)
{
    constexpr qsizetype mostLines = 6;
    constexpr qsizetype mostCharacters = 400;
    const QString text = QString::fromStdString(record.result.output).trimmed();
    const QStringList lines = text.split(u'\n');
    return lines.mid(qMax<qsizetype>(lines.size() - mostLines, 0)).join(u'\n').right(mostCharacters);
}

bool isFailure(const HookRecord& record)
{
    return record.kind == HookRecord::Kind::leftOut || record.result.kind != HookResult::Kind::done;
}

} // namespace brevlin
