#include "platform/freedesktop/notifications/notification_authorization.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace brevlin {

namespace {

// How long a reader waits for a server that has never answered. Shorter than a tick: the program's start
// waits for it.
constexpr Seconds readersPatience{0.5};
// How long a server has to confirm that it is there.
constexpr Seconds confirmationPatience{5.0};

} // namespace

NotificationAuthorizationSnapshot NotificationAuthorization::snapshot() const
{
    const bool isAuthorized = m_state == NotificationAuthorizationState::authorized;
    return {m_state, isAuthorized && !m_isDoNotDisturbOn, isAuthorized && m_capabilities.contains("sound"),
            isAuthorized};
}

void NotificationAuthorization::ask()
{
    m_isAsking = true;
    m_server.readCapabilities([this, question = ++m_question](const auto& answer) {
        if (question == m_question) {
            m_isAsking = false;
            answered(answer);
        }
    });
}

void NotificationAuthorization::answered(
    const Expected<NotificationServer::Capabilities, std::string>& answer)
{
    if (answer) {
        m_state = NotificationAuthorizationState::authorized;
        m_capabilities = *answer;
        answerConfirmations({});
    } else {
        m_state = NotificationAuthorizationState::denied;
        answerConfirmations(Unexpected{answer.error()});
    }
    answerReaders();
    publish();
    if (answer && m_serverHandler) {
        m_serverHandler();
    }
}

void NotificationAuthorization::read(Reader reader)
{
    if (m_state != NotificationAuthorizationState::unknown) {
        reader(snapshot());
        return;
    }
    m_readers.push_back(std::move(reader));
    if (!m_readersPatience) {
        m_readersPatience = m_scheduler.after(readersPatience, [this] { answerReaders(); });
    }
    if (!m_isAsking) {
        ask();
    }
}

void NotificationAuthorization::answerReaders()
{
    m_readersPatience.reset();
    for (const Reader& reader : std::exchange(m_readers, {})) {
        reader(snapshot());
    }
}

void NotificationAuthorization::confirm(Completion completion)
{
    const std::uint64_t number = ++m_lastConfirmation;
    TaskHandle patience = m_scheduler.after(confirmationPatience, [this, number] {
        const auto confirmation = m_confirmations.extract(number);
        confirmation.mapped().completion(Unexpected{std::generic_category().message(ETIMEDOUT)});
    });
    m_confirmations.emplace(number, Confirmation{std::move(completion), std::move(patience)});
    if (!m_isAsking) {
        ask();
    }
}

void NotificationAuthorization::answerConfirmations(const Expected<void, std::string>& result)
{
    for (const auto& [number, confirmation] : std::exchange(m_confirmations, {})) {
        confirmation.completion(result);
    }
}

void NotificationAuthorization::serverBecameUnavailable()
{
    m_state = NotificationAuthorizationState::denied;
    publish();
}

void NotificationAuthorization::setDoNotDisturb(bool isOn)
{
    m_isDoNotDisturbOn = isOn;
    publish();
}

void NotificationAuthorization::publish()
{
    const NotificationAuthorizationSnapshot current = snapshot();
    if (std::exchange(m_published, current) != current && m_changeHandler) {
        m_changeHandler();
    }
}

void NotificationAuthorization::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

void NotificationAuthorization::setServerHandler(std::function<void()> handler)
{
    m_serverHandler = std::move(handler);
}

} // namespace brevlin
