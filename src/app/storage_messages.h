#pragma once

#include "core/language.h"
#include "storage/document_error.h"
#include "storage/session_store_error.h"

#include <string>

namespace brevlin {

class SessionStore;

/// What the user is told of a document that could not be read or written, and what he can count on.
struct StorageMessage
{
    std::string title;
    std::string detail;
};

namespace StorageMessages {

/// In both languages, because the choice of one is among what could not be read.
StorageMessage preferencesUnread(const DocumentError& error);
StorageMessage timerReset(AppLanguage language);
StorageMessage timerUnread(const DocumentError& error, AppLanguage language);
/// It is tried again where the disk refused; nothing helps where the timer cannot be expressed.
StorageMessage timerNotSaved(const DocumentError& error, bool isTriedAgain, AppLanguage language);
/// Of what is known beside the records. It is tried again, unless the content does not decode: it is then
/// kept under another name.
StorageMessage details(const DocumentError& error, bool isRead, AppLanguage language);
/// The copies of a history that was cleared could not be removed. It is tried again.
StorageMessage backups(const DocumentError& error, AppLanguage language);
StorageMessage history(const SessionStoreError& error, const SessionStore& store, AppLanguage language);

} // namespace StorageMessages

} // namespace brevlin
