#include "platform/freedesktop/session/activation_service.h"

#include "platform/freedesktop/bus/bus_values.h"

namespace brevlin {

namespace {

const QString description = QStringLiteral(R"xml(
<interface name="org.freedesktop.Application">
  <method name="Activate"><arg name="platform_data" type="a{sv}" direction="in"/></method>
  <method name="Open">
    <arg name="uris" type="as" direction="in"/>
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
  <method name="ActivateAction">
    <arg name="action_name" type="s" direction="in"/>
    <arg name="parameter" type="av" direction="in"/>
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
</interface>
)xml");

} // namespace

const QString ActivationService::interface = QStringLiteral("org.freedesktop.Application");

ActivationService::ActivationService() : BusInterface(interface, description) {}

// There are no documents to open: whoever asks for one wants to see the program.
BusAnswer ActivationService::answer(const QString& method, const QVariantList& arguments)
{
    const auto platformData = qdbus_cast<QVariantMap>(arguments.constLast());
    const auto text = [&platformData](const char* key) {
        return busValue<QString>(platformData.value(QString::fromLatin1(key))).value_or(QString());
    };
    const QString startupIdentifier = text("desktop-startup-id");
    Q_EMIT requested(
        {method == QLatin1String("ActivateAction") ? arguments.constFirst().toString() : QString(),
         startupIdentifier.isEmpty() ? text("activation-token") : startupIdentifier});
    return {};
}

} // namespace brevlin
