#include "platform/freedesktop/absent_services.h"

#include <cerrno>
#include <system_error>

namespace brevlin {

namespace {

std::string notSupported()
{
    return std::generic_category().message(ENOTSUP);
}

} // namespace

void AbsentNotificationCenter::setResponseHandler(
    std::function<void(const NotificationResponse&)> /*handler*/)
{}

void AbsentNotificationCenter::setCategories(std::vector<NotificationCategory> /*categories*/) {}

void AbsentNotificationCenter::add(const NotificationRequest& /*request*/, Completion completion)
{
    completion(Unexpected{notSupported()});
}

void AbsentNotificationCenter::removePending(const std::vector<std::string>& /*identifiers*/) {}

void AbsentNotificationCenter::removeDelivered(const std::vector<std::string>& /*identifiers*/) {}

void AbsentNotificationCenter::readSettings(std::function<void(NotificationAuthorizationSnapshot)> completion)
{
    completion(NotificationAuthorizationSnapshot{});
}

void AbsentNotificationCenter::requestAuthorization(Completion completion)
{
    completion(Unexpected{notSupported()});
}

} // namespace brevlin
