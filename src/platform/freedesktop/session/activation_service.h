#pragma once

#include "platform/freedesktop/bus/bus_interface.h"
#include "platform/freedesktop/session/instance_request.h"

namespace brevlin {

/// org.freedesktop.Application, through which the desktop and a second start reach the running program
/// (https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html).
class ActivationService final : public BusInterface
{
    Q_OBJECT

public:
    static const QString interface;

    ActivationService();

Q_SIGNALS:
    void requested(const InstanceRequest& request);

protected:
    BusAnswer answer(const QString& method, const QVariantList& arguments) override;
};

} // namespace brevlin
