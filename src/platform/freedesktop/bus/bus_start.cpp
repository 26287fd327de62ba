#include "platform/freedesktop/bus/bus_start.h"

#include "platform/freedesktop/bus/bus_greeting.h"

#include <QAccessible>

namespace brevlin {

namespace {

// A bus answers within a millisecond. A busy machine may take longer, and then a silent one would be
// believed.
constexpr std::chrono::milliseconds longestSession{500};
// Beyond that; whoever needs a screen reader rather waits.
constexpr std::chrono::milliseconds longestAccessibility{1000};

constexpr const char* sessionVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* accessibilityVariable = "AT_SPI_BUS_ADDRESS";
constexpr const char* nowhere = "unix:path=/dev/null/bus"; // refused at once

} // namespace

BusStart::BusStart()
    : m_sessionAddress(sessionBusAddress())
    , m_session([address = m_sessionAddress] { return busAnswers(address); })
    , m_accessibility([address = m_sessionAddress] { return accessibilityAnswers(address); })
    , m_system([address = systemBusAddress()] { return busAnswers(address); })
{}

void BusStart::applicationIsToBeMade()
{
    if (m_session.answerWithin(longestSession) == BusInquiry::Answer::open) {
        m_sessionElsewhere.emplace(sessionVariable, nowhere);
    }
}

void BusStart::applicationIsMade(const std::string& displaysAccessibility)
{
    const bool isQtKeptAway = m_sessionElsewhere.has_value();
    if (isQtKeptAway) {
        QDBusConnection::sessionBus(); // fails, and Qt remembers it
        m_sessionElsewhere.reset();
    } else if (!doesAccessibilityAnswer(displaysAccessibility)) {
        const OtherValue elsewhere(accessibilityVariable, nowhere);
        QAccessible::isActive(); // connects, and never looks again
    }
    m_sessionBus.emplace(m_session, [address = QString::fromStdString(m_sessionAddress), isQtKeptAway] {
        return isQtKeptAway ? QDBusConnection::connectToBus(address, QStringLiteral("brevlin-session"))
                            : QDBusConnection::sessionBus();
    });
    m_systemBus.emplace(m_system, [] { return QDBusConnection::systemBus(); });
    m_sessionBus->holdBack();
    m_systemBus->holdBack();
}

void BusStart::release()
{
    m_sessionBus->release();
    m_systemBus->release();
}

bool BusStart::doesAccessibilityAnswer(const std::string& displaysAddress) const
{
    const std::string chosen = qgetenv(accessibilityVariable).toStdString();
    const std::string& address = chosen.empty() ? displaysAddress : chosen;
    const BusInquiry byAddress([address] { return address.empty() || busAnswers(address); });
    return (!chosen.empty() ||
            m_accessibility.answerWithin(longestAccessibility) != BusInquiry::Answer::open) &&
           byAddress.answerWithin(longestAccessibility) != BusInquiry::Answer::open;
}

BusStart::OtherValue::OtherValue(const char* variable, const char* value)
    : m_variable(variable), m_before(qgetenv(variable))
{
    qputenv(variable, value);
}

BusStart::OtherValue::~OtherValue()
{
    if (m_before.isNull()) {
        qunsetenv(m_variable);
    } else {
        qputenv(m_variable, m_before);
    }
}

} // namespace brevlin
