#include "services/absence_notification_service.h"

#include <charconv>
#include <utility>

namespace brevlin {

namespace {

constexpr const char* categoryIdentifier = "brevlin.absence.question";
constexpr const char* threadIdentifier = "brevlin.absence";
constexpr const char* requestIdentifier = "brevlin.absence";
constexpr const char* actionPrefix = "brevlin.absence.";
constexpr const char* sessionKey = "sessionID";
constexpr const char* indexKey = "absence";

std::string actionIdentifier(AbsenceDecision decision)
{
    return actionPrefix + std::string{rawValue(decision)};
}

std::optional<std::size_t> indexFrom(const std::string& text)
{
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{index} : std::nullopt;
}

} // namespace

AbsenceNotificationService::AbsenceNotificationService(UserNotificationCenter& center) : m_center(center)
{
    m_center.setResponseHandler([this](const NotificationResponse& response) { respond(response); });
}

void AbsenceNotificationService::setAnswerHandler(AnswerHandler handler)
{
    m_answerHandler = std::move(handler);
}

void AbsenceNotificationService::ask(const Question& question, Instant now)
{
    withdraw(); // before the buttons change, which an earlier question has, too
    NotificationCategory category;
    category.identifier = categoryIdentifier;
    category.actions = {{actionIdentifier(AbsenceDecision::keep), question.keep},
                        {actionIdentifier(AbsenceDecision::doNotCount), question.doNotCount},
                        {actionIdentifier(AbsenceDecision::endAtStart), question.endAtStart}};
    category.hiddenPreviewPlaceholder = question.title;
    m_center.setCategories({std::move(category)});
    NotificationRequest request;
    request.identifier = requestIdentifier;
    request.title = question.title;
    request.body = question.body;
    request.categoryIdentifier = categoryIdentifier;
    request.threadIdentifier = threadIdentifier;
    request.userInfo = {{sessionKey, question.session.text()}, {indexKey, std::to_string(question.index)}};
    request.requestedAt = now;
    // Where nothing can be shown, the window asks.
    m_center.add(request, [](const Expected<void, std::string>& /*shown*/) {});
}

void AbsenceNotificationService::withdraw()
{
    m_center.removePending({requestIdentifier});
    m_center.removeAllDelivered();
}

void AbsenceNotificationService::respond(const NotificationResponse& response)
{
    const auto session = response.userInfo.find(sessionKey);
    const auto index = response.userInfo.find(indexKey);
    if (!m_answerHandler || session == response.userInfo.end() || index == response.userInfo.end()) {
        return;
    }
    const auto id = Uuid::fromText(session->second);
    const auto place = indexFrom(index->second);
    if (!id || !place) {
        return;
    }
    if (response.actionIdentifier == defaultNotificationActionIdentifier) {
        m_answerHandler(*id, *place, std::nullopt);
        return;
    }
    for (const AbsenceDecision decision :
         {AbsenceDecision::keep, AbsenceDecision::doNotCount, AbsenceDecision::endAtStart}) {
        if (response.actionIdentifier == actionIdentifier(decision)) {
            m_answerHandler(*id, *place, decision);
        }
    }
}

} // namespace brevlin
