#pragma once

#include "core/finished_session.h"
#include "platform/freedesktop/bus/bus_interface.h"

#include <vector>

namespace brevlin {

class RemoteControl;

/// com.quillmark.Brevlin.Timer1: the timer on the session bus, as the description beside this file has it.
/// Every change is told but the time that passes, so that nothing is sent from second to second.
class TimerInterface final : public BusInterface
{
    Q_OBJECT

public:
    explicit TimerInterface(RemoteControl& control);

protected:
    QVariantMap properties() const override;
    BusAnswer answer(const QString& method, const QVariantList& arguments) override;

private:
    BusAnswer start(const QVariantMap& options);
    BusAnswer show(const QString& section, const QVariantMap& platformData);
    void tellChanges();

    RemoteControl& m_control;
    QVariantMap m_told;                   // without what passes by itself
    std::vector<FinishedSession> m_ended; // and not told yet
};

} // namespace brevlin
