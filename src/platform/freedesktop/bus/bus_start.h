#pragma once

#include "platform/freedesktop/bus/bus_inquiry.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QByteArray>

#include <optional>
#include <string>

namespace brevlin {

/// Stands around the making of the application object. Qt's own parts (accessibility, input methods, themes)
/// connect to the session's bus as soon as there is one, wait for it without limit, and for the accessibility
/// service too. Where one of them stays silent Qt is made to believe that there is none, which holds for the
/// whole run: it never looks again.
class BusStart final
{
public:
    /// Asks the buses. To be made when the environment is as it shall be.
    BusStart();
    /// Waits for what Qt is about to ask: not noticeably where it answers, else a second and a half at most.
    void applicationIsToBeMade();
    /// `displaysAccessibility` is the address of the accessibility bus that the display names; empty where it
    /// names none.
    void applicationIsMade(const std::string& displaysAccessibility);

    /// Both exist once the application is made. Until release() they call nobody back: each of Qt's
    /// subscriptions waits for the bus, and together they would keep the first picture waiting.
    MessageBus& session() { return *m_sessionBus; }
    MessageBus& system() { return *m_systemBus; }
    void release();

private:
    /// A variable of the environment has another value while this lives: other programs are to find it as it
    /// was.
    class OtherValue final
    {
    public:
        OtherValue(const char* variable, const char* value);
        ~OtherValue();
        OtherValue(const OtherValue&) = delete;
        OtherValue& operator=(const OtherValue&) = delete;

    private:
        const char* m_variable;
        QByteArray m_before;
    };

    bool doesAccessibilityAnswer(const std::string& displaysAddress) const;

    const std::string m_sessionAddress;
    BusInquiry m_session;
    BusInquiry m_accessibility;
    BusInquiry m_system;
    std::optional<OtherValue> m_sessionElsewhere;
    std::optional<MessageBus> m_sessionBus;
    std::optional<MessageBus> m_systemBus;
};

} // namespace brevlin
