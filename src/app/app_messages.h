#pragma once

#include "core/language.h"
#include "core/uuid.h"

#include <QObject>

#include <deque>
#include <optional>
#include <string>

namespace brevlin {

/// A failure that the user is told of, in the language of the moment at which it happened.
struct AppMessage
{
    Uuid id; ///< new for every message
    std::string title;
    std::string detail;

    bool operator==(const AppMessage&) const = default;
};

/// What the user is to be told, one after the other. None takes another one's place, and what waits already
/// is not said twice.
class AppMessages final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// What the user is to be told now; more may wait behind it.
    std::optional<AppMessage> appMessage() const
    {
        return m_messages.empty() ? std::nullopt : std::optional{m_messages.front()};
    }
    const std::deque<AppMessage>& appMessages() const { return m_messages; }
    /// The user has read the message; the next one takes its place.
    void clearAppMessage();

    void raise(const BilingualText& title, const std::string& detail);
    void raise(const std::string& title, const std::string& detail);
    /// Of what is raised from now on.
    void setLanguage(AppLanguage language) { m_language = language; }
    AppLanguage language() const { return m_language; }

Q_SIGNALS:
    /// Another message is to be told now, or one more waits.
    void appMessageChanged();

private:
    AppLanguage m_language = AppLanguage::simplifiedChinese;
    std::deque<AppMessage> m_messages;
};

} // namespace brevlin
