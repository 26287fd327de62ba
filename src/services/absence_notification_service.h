#pragma once

#include "core/session_details.h"
#include "platform/user_notification_center.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace brevlin {

/// Asks by a notification what the time was that somebody was away: builds and withdraws it and tells what
/// the user answered. The notification centre is its own, so that it takes no announcement's place.
class AbsenceNotificationService final
{
public:
    struct Question
    {
        Uuid session;
        std::size_t index = 0; ///< of the absence in the phase's details
        std::string title;
        std::string body;
        std::string keep; ///< these are the buttons
        std::string doNotCount;
        std::string endAtStart;
    };
    /// With the phase, the absence and the answer; without one the notification itself was chosen.
    using AnswerHandler = std::function<void(const Uuid&, std::size_t, std::optional<AbsenceDecision>)>;

    explicit AbsenceNotificationService(UserNotificationCenter& center);

    void setAnswerHandler(AnswerHandler handler);
    /// In place of an earlier question. It comes a second later: a session that is locked as the computer
    /// wakes tells so by then.
    void ask(const Question& question, Instant now);
    /// The question is answered, or nobody is there for it.
    void withdraw();

private:
    void respond(const NotificationResponse& response);

    UserNotificationCenter& m_center;
    AnswerHandler m_answerHandler;
};

} // namespace brevlin
