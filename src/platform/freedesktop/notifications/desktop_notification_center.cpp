#include "platform/freedesktop/notifications/desktop_notification_center.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

// What rounding may make of an instant.
constexpr Seconds rounding{1e-6};
// Timers stand still while the computer sleeps and do not know when its clock is set, so the time is looked
// at this often.
constexpr Seconds longestDoze{1.0};

// The first of the dozes that make up this wait. The odd one comes first, so that the last ends on the
// instant.
Seconds doze(Seconds wait)
{
    if (wait <= longestDoze) {
        return wait;
    }
    const Seconds rest{std::fmod(wait.count(), longestDoze.count())};
    return rest > rounding ? rest : longestDoze;
}

bool contains(const std::vector<std::string>& identifiers, const NotificationRequest& request)
{
    return std::find(identifiers.begin(), identifiers.end(), request.identifier) != identifiers.end();
}

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

} // namespace

DesktopNotificationCenter::DesktopNotificationCenter(std::unique_ptr<NotificationServer> server,
                                                     const Clock& clock, TaskScheduler& scheduler)
    : m_server(std::move(server))
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_banner(*m_server)
    , m_authorization(*m_server, scheduler)
{
    observeServer();
    m_authorization.setServerHandler([this] { serverIsThere(); });
    m_authorization.ask();
}

DesktopNotificationCenter::~DesktopNotificationCenter()
{
    m_banner.close();
}

void DesktopNotificationCenter::setResponseHandler(std::function<void(const NotificationResponse&)> handler)
{
    m_responseHandler = std::move(handler);
}

void DesktopNotificationCenter::setCategories(std::vector<NotificationCategory> categories)
{
    if (std::exchange(m_categories, std::move(categories)) != m_categories && m_banner.isShown()) {
        show(true);
    }
}

// Pending requests

void DesktopNotificationCenter::add(const NotificationRequest& request, Completion completion)
{
    std::erase_if(m_pending, [&](const auto& other) { return other.identifier == request.identifier; });
    if (m_delivered && m_delivered->request.identifier == request.identifier) {
        removeAllDelivered(); // what it announced lies ahead again
    }
    m_pending.push_back(request);
    awaitNextDue();
    m_authorization.confirm(std::move(completion));
}

void DesktopNotificationCenter::removePending(const std::vector<std::string>& identifiers)
{
    deliverWhatIsDue();
    std::erase_if(m_pending, [&](const auto& request) { return contains(identifiers, request); });
    awaitNextDue();
}

bool DesktopNotificationCenter::isDue(const NotificationRequest& request) const
{
    return dueOf(request) <= m_clock.now();
}

void DesktopNotificationCenter::awaitNextDue()
{
    m_nextDue.reset();
    const auto next = std::min_element(m_pending.begin(), m_pending.end(),
                                       [this](const auto& a, const auto& b) { return dueOf(a) < dueOf(b); });
    if (next == m_pending.end()) {
        return;
    }
    const Seconds wait = std::max(dueOf(*next) - m_clock.now(), Seconds::zero());
    m_nextDue = m_scheduler.after(doze(wait), [this] {
        deliverWhatIsDue();
        awaitNextDue();
    });
}

void DesktopNotificationCenter::deliverWhatIsDue()
{
    const auto firstDue = std::stable_partition(m_pending.begin(), m_pending.end(),
                                                [this](const auto& request) { return !isDue(request); });
    if (firstDue == m_pending.end()) {
        return;
    }
    // There is room for one only.
    NotificationRequest latest = *std::max_element(
        firstDue, m_pending.end(), [this](const auto& a, const auto& b) { return dueOf(a) < dueOf(b); });
    m_pending.erase(firstDue, m_pending.end());
    deliver(std::move(latest));
}

// On the screen

void DesktopNotificationCenter::deliver(NotificationRequest request)
{
    m_delivered = Delivered{std::move(request)};
    showWhenLetThrough();
}

void DesktopNotificationCenter::showWhenLetThrough()
{
    if (!m_gate) {
        show(false);
        return;
    }
    m_gate([this, showing = ++m_showing] {
        if (showing == m_showing && m_delivered) {
            show(false);
        }
    });
}

void DesktopNotificationCenter::show(bool isSilent)
{
    ServerNotification notification = serverForm(m_delivered->request);
    notification.isSilent = isSilent;
    m_banner.show(std::move(notification));
}

ServerNotification DesktopNotificationCenter::serverForm(const NotificationRequest& request) const
{
    ServerNotification notification;
    notification.title = request.title;
    notification.body =
        m_authorization.capabilities().contains("body-markup") ? escaped(request.body) : request.body;
    notification.urgency = urgencyOf(request);
    // Some servers without actions turn a notification that has them into a dialog.
    if (m_authorization.capabilities().contains("actions")) {
        // Without a label: some servers make a button of it otherwise.
        notification.actions = {{defaultNotificationActionIdentifier, {}}};
        const std::vector<NotificationAction> buttons = actionsOf(request.categoryIdentifier);
        notification.actions.insert(notification.actions.end(), buttons.begin(), buttons.end());
    }
    return notification;
}

// Exactly one of banner and island is to be seen where they would cover each other.
NotificationUrgency DesktopNotificationCenter::urgencyOf(const NotificationRequest& request) const
{
    if (m_bannerPlace && m_bannerPlace->hasQuietList && m_bannerObstacle &&
        m_bannerObstacle(*m_bannerPlace)) {
        return NotificationUrgency::low;
    }
    return request.timeSensitive ? NotificationUrgency::critical : NotificationUrgency::normal;
}

std::vector<NotificationAction>
DesktopNotificationCenter::actionsOf(const std::string& categoryIdentifier) const
{
    const auto category =
        std::find_if(m_categories.begin(), m_categories.end(),
                     [&](const NotificationCategory& each) { return each.identifier == categoryIdentifier; });
    return category == m_categories.end() ? std::vector<NotificationAction>{} : category->actions;
}

void DesktopNotificationCenter::removeDelivered(const std::vector<std::string>& identifiers)
{
    if (!m_delivered || !contains(identifiers, m_delivered->request)) {
        return;
    }
    if (!std::exchange(m_delivered->staysAtRemoval, false)) {
        removeAllDelivered();
    }
}

void DesktopNotificationCenter::removeAllDelivered()
{
    m_delivered.reset();
    m_banner.close();
}

// What the server tells

void DesktopNotificationCenter::observeServer()
{
    NotificationServer::Observer observer;
    observer.appeared = [this] {
        m_authorization.ask();
    };
    observer.vanished = [this] {
        m_banner.lostServer();
        m_authorization.setDoNotDisturb(false);
    };
    observer.becameUnavailable = [this] {
        m_authorization.serverBecameUnavailable();
    };
    observer.actionInvoked = [this](std::uint32_t id, const std::string& action) {
        actionInvoked(id, action);
    };
    observer.activationTokenGiven = [this](std::uint32_t id, const std::string& token) {
        if (m_banner.isShownAs(id)) {
            m_givenToken = token;
        }
    };
    observer.closed = [this](std::uint32_t id, NotificationServer::CloseReason reason) {
        closed(id, reason);
    };
    observer.doNotDisturbChanged = [this](bool isOn) {
        m_authorization.setDoNotDisturb(isOn);
    };
    observer.bannerPlaceChanged = [this](const std::optional<BannerPlace>& place) {
        m_bannerPlace = place;
        if (m_bannerPlaceHandler) {
            m_bannerPlaceHandler(place);
        }
    };
    m_server->setObserver(std::move(observer));
}

void DesktopNotificationCenter::setBannerObstacle(std::function<bool(const BannerPlace&)> obstacle)
{
    m_bannerObstacle = std::move(obstacle);
}

void DesktopNotificationCenter::setBannerPlaceHandler(
    std::function<void(const std::optional<BannerPlace>&)> handler)
{
    m_bannerPlaceHandler = std::move(handler);
}

void DesktopNotificationCenter::setGate(std::function<void(std::function<void()> show)> gate)
{
    m_gate = std::move(gate);
}

void DesktopNotificationCenter::serverIsThere()
{
    if (m_delivered && !m_banner.isShown()) {
        showWhenLetThrough();
    }
}

void DesktopNotificationCenter::actionInvoked(std::uint32_t id, const std::string& action)
{
    m_activationToken = std::exchange(m_givenToken, {});
    if (m_banner.isShownAs(id) && m_delivered) {
        const NotificationRequest request = std::move(m_delivered->request);
        // Some servers leave it there. Whatever they report of it from now on is about nothing of ours.
        removeAllDelivered();
        respond(action, request);
    }
    m_activationToken.clear();
}

void DesktopNotificationCenter::closed(std::uint32_t id, NotificationServer::CloseReason reason)
{
    if (!m_banner.isShownAs(id) || !m_delivered) {
        return;
    }
    const NotificationRequest request = std::move(m_delivered->request);
    m_delivered.reset();
    m_banner.wasClosed();
    if (reason == NotificationServer::CloseReason::dismissed) {
        respond(dismissNotificationActionIdentifier, request);
    }
}

void DesktopNotificationCenter::respond(const std::string& action, const NotificationRequest& request)
{
    if (m_responseHandler) {
        m_responseHandler({action, request.userInfo});
    }
}

// Authorization

void DesktopNotificationCenter::requestAuthorization(Completion completion)
{
    m_authorization.confirm(std::move(completion));
}

void DesktopNotificationCenter::readSettings(
    std::function<void(NotificationAuthorizationSnapshot)> completion)
{
    m_authorization.read(std::move(completion));
}

void DesktopNotificationCenter::setSettingsChangeHandler(std::function<void()> handler)
{
    m_authorization.setChangeHandler(std::move(handler));
}

} // namespace brevlin
