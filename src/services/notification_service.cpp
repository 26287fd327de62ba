#include "services/notification_service.h"

#include "core/timer_engine.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace brevlin {

namespace {

constexpr const char* categoryIdentifier = "brevlin.timer.finished";
constexpr const char* startNextIdentifier = "brevlin.timer.start-next";
constexpr const char* stopAlertIdentifier = "brevlin.timer.stop-alert";
constexpr const char* threadIdentifier = "brevlin.timer";
constexpr const char* requestPrefix = "brevlin.timer.";
// Of an earlier release.
constexpr const char* legacyNotificationIdentifierPrefix = "kestrove.timer.";
constexpr const char* sessionKey = "sessionID";
constexpr const char* phaseKey = "phase";

std::vector<std::string> requestIdentifiers(const Uuid& sessionID)
{
    const std::string text = sessionID.text();
    return {requestPrefix + text, legacyNotificationIdentifierPrefix + text};
}

TimerNotificationAction actionFrom(const std::string& identifier)
{
    using Kind = TimerNotificationAction::Kind;
    if (identifier == defaultNotificationActionIdentifier) {
        return {Kind::opened, {}};
    }
    if (identifier == dismissNotificationActionIdentifier) {
        return {Kind::dismissed, {}};
    }
    if (identifier == startNextIdentifier) {
        return {Kind::startNextPhase, {}};
    }
    if (identifier == stopAlertIdentifier) {
        return {Kind::stopAlert, {}};
    }
    return {Kind::unknown, identifier};
}

std::string notificationTitle(TimerPhase phase, AppLanguage language)
{
    const std::string name{title(phase, language)};
    return name + (language == AppLanguage::english ? " complete" : "时间到");
}

std::string notificationBody(const TimerSnapshot& snapshot, AppLanguage language)
{
    const bool english = language == AppLanguage::english;
    if (const auto intention = normalizedIntention(snapshot.intention)) {
        return english ? "“" + *intention + "” is complete. Ready for the next phase."
                       : "“" + *intention + "”已完成，准备进入下一阶段。";
    }
    const std::string name{title(snapshot.phase, language)};
    return name + (english ? " is complete. Ready for the next phase." : "已结束，准备进入下一阶段。");
}

} // namespace

std::string NotificationServiceError::errorDescription() const
{
    static constexpr std::array<BilingualText, 3> texts{{
        {"无法安排提醒：计时会话缺少标识。", "Unable to schedule notification: missing session identifier."},
        {"无法安排提醒：计时会话缺少结束时间。", "Unable to schedule notification: missing deadline."},
        {"无法安排提醒：计时已经结束。", "Unable to schedule notification: timer already ended."},
    }};
    return std::string{texts.at(static_cast<std::size_t>(kind)).in(language)};
}

NotificationService::NotificationService(UserNotificationCenter& center) : m_center(center)
{
    m_center.setResponseHandler([this](const NotificationResponse& response) {
        if (!m_actionHandler) {
            return;
        }
        const auto session = response.userInfo.find(sessionKey);
        m_actionHandler(actionFrom(response.actionIdentifier),
                        session == response.userInfo.end() ? std::nullopt : Uuid::fromText(session->second));
    });
    registerActionCategory();
}

void NotificationService::setLanguage(AppLanguage language)
{
    m_language = language;
    registerActionCategory();
}

void NotificationService::setActionHandler(ActionHandler handler)
{
    m_actionHandler = std::move(handler);
}

void NotificationService::schedule(const TimerSnapshot& snapshot, AlertIntensity intensity, Instant now,
                                   Completion completion)
{
    using Kind = NotificationServiceError::Kind;
    const Seconds remaining = snapshot.remainingSeconds(now);
    std::optional<Kind> obstacle;
    if (!snapshot.sessionID) {
        obstacle = Kind::missingSessionID;
    } else if (!snapshot.expectedEndAt) {
        obstacle = Kind::missingDeadline;
    } else if (remaining <= Seconds::zero()) {
        obstacle = Kind::deadlineAlreadyPassed;
    }
    if (obstacle) {
        completion(Unexpected{NotificationServiceError{*obstacle, m_language}.errorDescription()});
        return;
    }
    m_center.removePending(requestIdentifiers(*snapshot.sessionID));
    NotificationRequest request = makeRequest(snapshot, intensity);
    request.requestedAt = now;
    request.delay = std::max(remaining, Seconds{1.0});
    m_center.add(request, std::move(completion));
}

void NotificationService::cancel(const std::optional<Uuid>& sessionID)
{
    if (sessionID) {
        const std::vector<std::string> identifiers = requestIdentifiers(*sessionID);
        m_center.removePending(identifiers);
        m_center.removeDelivered(identifiers);
    }
}

void NotificationService::withdrawAnnouncement()
{
    m_center.removeAllDelivered();
}

void NotificationService::authorizationStatus(
    std::function<void(NotificationAuthorizationSnapshot)> completion)
{
    m_center.readSettings(std::move(completion));
}

void NotificationService::requestAuthorization(Completion completion)
{
    m_center.requestAuthorization(std::move(completion));
}

void NotificationService::setAuthorizationChangeHandler(std::function<void()> handler)
{
    m_center.setSettingsChangeHandler(std::move(handler));
}

void NotificationService::registerActionCategory()
{
    const bool english = m_language == AppLanguage::english;
    NotificationCategory category;
    category.identifier = categoryIdentifier;
    category.actions = {{startNextIdentifier, english ? "Start next phase" : "开始下一阶段"},
                        {stopAlertIdentifier, english ? "Stop alert" : "停止提醒"}};
    category.hiddenPreviewPlaceholder = english ? "Timer phase complete" : "计时阶段已结束";
    m_center.setCategories({std::move(category)});
}

NotificationRequest NotificationService::makeRequest(const TimerSnapshot& snapshot,
                                                     AlertIntensity intensity) const
{
    NotificationRequest request;
    request.identifier = requestIdentifiers(*snapshot.sessionID).front();
    request.title = notificationTitle(snapshot.phase, m_language);
    request.body = notificationBody(snapshot, m_language);
    request.categoryIdentifier = categoryIdentifier;
    request.threadIdentifier = threadIdentifier;
    request.userInfo = {{sessionKey, snapshot.sessionID->text()},
                        {phaseKey, std::string{rawValue(snapshot.phase)}}};
    request.timeSensitive = intensity == AlertIntensity::strong;
    return request;
}

} // namespace brevlin
