#include "remote/remote_desk.h"

#include "platform/freedesktop/socket/control_answer.h"
#include "remote/remote_control.h"

#include <utility>

namespace brevlin {

namespace {

QByteArray line(const ControlAnswer& answer)
{
    return QByteArray::fromStdString(controlAnswerLine(answer));
}

} // namespace

RemoteDesk::RemoteDesk(RemoteControl& control, QObject* parent) : QObject(parent), m_control(control)
{
    connect(&control, &RemoteControl::changed, this, &RemoteDesk::tellWaiting);
}

void RemoteDesk::carryOut(const QStringList& arguments, const ApplicationInstance::Answer& answer)
{
    const std::string word = arguments.value(0).toStdString();
    const std::string text = arguments.value(1).toStdString();
    const auto tell = [&answer](const std::optional<std::string>& refusal) {
        answer(line(refusal ? ControlAnswer{ControlAnswer::Kind::refused, *refusal, {}, 0}
                            : ControlAnswer{ControlAnswer::Kind::done, {}, {}, 0}));
    };
    if (word == controlWord::status) {
        answer(status());
    } else if (word == controlWord::await) {
        if (text == std::to_string(m_revision)) {
            m_waiting.push_back(answer);
        } else {
            answer(status());
        }
    } else if (word == controlWord::intention) {
        m_control.setIntention(text);
        tell(std::nullopt);
    } else if (word == controlWord::show) {
        m_control.show(text, arguments.value(2).toStdString());
        tell(std::nullopt);
    } else if (word == controlWord::quit) {
        tell(std::nullopt);
        m_control.quit();
    } else if (const auto verb = fromRawValue<TimerVerb>(word)) {
        tell(*verb == TimerVerb::start && arguments.size() > 1 ? m_control.start(text)
                                                               : m_control.carryOut(*verb));
    } else {
        answer(line({}));
    }
}

QByteArray RemoteDesk::status() const
{
    return line({ControlAnswer::Kind::status, m_control.statusJson(), m_control.languageTag(), m_revision});
}

void RemoteDesk::tellWaiting()
{
    ++m_revision;
    const QByteArray now = status();
    for (const ApplicationInstance::Answer& answer : std::exchange(m_waiting, {})) {
        answer(now);
    }
}

} // namespace brevlin
