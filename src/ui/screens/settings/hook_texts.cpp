#include "ui/screens/settings/hook_texts.h"

#include "ui/style/text.h"

#include <QStringList>

#include <array>

namespace brevlin {

namespace {

std::string_view eventText(HookEvent event, AppLanguage language)
{
    static constexpr std::array<BilingualText, 5> texts{{{"阶段开始", "started"},
                                                         {"阶段暂停", "paused"},
                                                         {"阶段继续", "resumed"},
                                                         {"阶段结束", "ended"},
                                                         {"阶段跳过", "skipped"}}};
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
    static constexpr BilingualText leftOut{"未运行", "Left out"};
    static constexpr BilingualText done{"完成", "Done"};
    static constexpr BilingualText failed{"失败（%1）", "Failed (%1)"};
    static constexpr BilingualText tookTooLong{"超时", "Timed out"};
    static constexpr BilingualText unsafe{"不安全，未运行", "Unsafe, not run"};
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

QString hookDetail(const HookRecord& record, AppLanguage language)
{
    static constexpr BilingualText leftOut{"等待运行的事件太多。", "Too many events were waiting."};
    static constexpr BilingualText unsafe{"其他用户可以修改此文件或其文件夹。",
                                          "Other users could change this file or its folder."};
    static constexpr BilingualText silent{"没有输出。", "It said nothing."};
    if (record.kind == HookRecord::Kind::leftOut) {
        return qtText(leftOut.in(language));
    }
    if (record.result.kind == HookResult::Kind::unsafe) {
        return qtText(unsafe.in(language));
    }
    constexpr qsizetype mostLines = 6;
    constexpr qsizetype mostCharacters = 400;
    const QString text = QString::fromStdString(record.result.output).trimmed();
    const QStringList lines = text.split(u'\n');
    return text.isEmpty()
               ? qtText(silent.in(language))
               : lines.mid(qMax<qsizetype>(lines.size() - mostLines, 0)).join(u'\n').right(mostCharacters);
}

bool isFailure(const HookRecord& record)
{
    return record.kind == HookRecord::Kind::leftOut || record.result.kind != HookResult::Kind::done;
}

} // namespace brevlin
