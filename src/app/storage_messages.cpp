#include "app/storage_messages.h"

#include "storage/session_store.h"

#include <string_view>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText timerStateReset{"计时状态已重置", "Timer state reset"};
constexpr BilingualText timerStateResetDetail{
    "上次保存的计时状态无法读取，已安全恢复为默认状态。",
    "The previous timer state could not be read and was safely reset."};
constexpr BilingualText timerStateUnread{"计时状态读取失败", "Failed to load timer state"};
constexpr BilingualText timerStateNotSaved{"计时状态保存失败", "Failed to save timer state"};
constexpr BilingualText historyUnread{"本地记录读取失败", "Failed to load local history"};
constexpr BilingualText detailsUnread{"暂停与离开记录读取失败", "Failed to load pauses and absences"};
constexpr BilingualText detailsNotSaved{"暂停与离开记录保存失败", "Failed to save pauses and absences"};
constexpr BilingualText detailsAreKept{
    "文件会原样保留：下次保存前将改名为“session-details-v1.unreadable-（UTC 时间）.json”。",
    "The file is kept as it is: before the next save it is renamed to "
    "“session-details-v1.unreadable-(UTC time).json”."};
constexpr BilingualText backupsNotRemoved{"备份删除失败", "Failed to remove backups"};
constexpr BilingualText areRemovedLater{"稍后会自动重试删除。", "Removing them is tried again."};
constexpr BilingualText recordNotSaved{"记录保存失败", "Failed to save record"};
constexpr BilingualText recordNotDeleted{"无法删除记录", "Unable to delete record"};
constexpr BilingualText historyNotChanged{"无法更改记录", "Unable to change records"};
constexpr BilingualText historyNotCleared{"无法清空记录", "Unable to clear history"};
constexpr std::string_view preferencesUnreadTitle = "偏好设置读取失败 · Failed to load preferences";

// What the user can count on, behind the system's own words.
constexpr BilingualText isReadAgain{
    "文件会原样保留，稍后会再次读取；在此之前不会写入。",
    "The file stays as it is and is read again; until then nothing is written to it."};
constexpr BilingualText recordsWait{
    "文件会原样保留，稍后会再次读取；新记录会先留在内存中，读取成功后再一并保存。",
    "The file stays as it is and is read again; new records wait in memory and join "
    "the others once it could be read."};
constexpr BilingualText isWrittenAgain{"稍后会自动重试保存。", "Saving is tried again."};
constexpr BilingualText recordIsKept{"记录仍保留在历史中，稍后会自动重试保存。",
                                     "The record stays in the history, and saving is tried again."};

std::string sentences(const std::string& systemsWords, std::string_view ours, AppLanguage language)
{
    return systemsWords + (language == AppLanguage::english ? ". " : "。") + std::string(ours);
}

std::string promiseToKeep(const std::string& path, AppLanguage language)
{
    return language == AppLanguage::english
               ? "The file “" + path + "” is kept as it is: before the next save it is renamed to " +
                     "“sessions-v1.unreadable-(UTC time).json”."
               : "文件“" + path +
                     "”会原样保留：下次保存前将改名为“sessions-v1.unreadable-（UTC 时间）.json”。";
}

StorageMessage message(const BilingualText& title, std::string detail, AppLanguage language)
{
    return {std::string(title.in(language)), std::move(detail)};
}

} // namespace

StorageMessage StorageMessages::preferencesUnread(const DocumentError& error)
{
    return {std::string(preferencesUnreadTitle),
            sentences(error.description, isReadAgain.simplifiedChinese, AppLanguage::simplifiedChinese) +
                " " + std::string(isReadAgain.english)};
}

StorageMessage StorageMessages::timerReset(AppLanguage language)
{
    return message(timerStateReset, std::string(timerStateResetDetail.in(language)), language);
}

StorageMessage StorageMessages::timerUnread(const DocumentError& error, AppLanguage language)
{
    return message(timerStateUnread, sentences(error.description, isReadAgain.in(language), language),
                   language);
}

StorageMessage StorageMessages::timerNotSaved(const DocumentError& error, bool isTriedAgain,
                                              AppLanguage language)
{
    return message(timerStateNotSaved,
                   isTriedAgain ? sentences(error.description, isWrittenAgain.in(language), language)
                                : error.description,
                   language);
}

StorageMessage StorageMessages::details(const DocumentError& error, bool isRead, AppLanguage language)
{
    const bool isUnread = !isRead || error.isAboutContent;
    const BilingualText& promise = error.isAboutContent ? detailsAreKept
                                   : isUnread           ? isReadAgain
                                                        : isWrittenAgain;
    return message(isUnread ? detailsUnread : detailsNotSaved,
                   sentences(error.description, promise.in(language), language), language);
}

StorageMessage StorageMessages::backups(const DocumentError& error, AppLanguage language)
{
    return message(backupsNotRemoved, sentences(error.description, areRemovedLater.in(language), language),
                   language);
}

StorageMessage StorageMessages::history(const SessionStoreError& error, const SessionStore& store,
                                        AppLanguage language)
{
    using Operation = SessionStoreError::Operation;
    const std::string description = error.errorDescription();
    switch (error.operation) {
    case Operation::fetch:
        return message(historyUnread,
                       sentences(description,
                                 store.isLoaded() ? promiseToKeep(store.path(), language)
                                                  : std::string(recordsWait.in(language)),
                                 language),
                       language);
    case Operation::insert:
        return message(recordNotSaved,
                       store.isSaved() ? description
                                       : sentences(description, recordIsKept.in(language), language),
                       language);
    case Operation::delete_:
        return message(recordNotDeleted, description, language);
    case Operation::edit:
        return message(historyNotChanged, description, language);
    case Operation::clear:
        break;
    }
    return message(historyNotCleared, description, language);
}

} // namespace brevlin
