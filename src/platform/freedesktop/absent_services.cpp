#include "platform/freedesktop/absent_services.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cerrno>
#include <system_error>

namespace brevlin {

namespace {

std::string notSupported()
{
    return std::generic_category().message(ENOTSUP);
}

} // namespace

Expected<void, std::string> AbsentLoginItem::registerItem()
{
    return Unexpected{notSupported()};
}

Expected<void, std::string> AbsentLoginItem::unregisterItem()
{
    return Unexpected{notSupported()};
}

std::unique_ptr<Sound> BellSoundPlayer::sound(const std::string& /*name*/)
{
    return nullptr;
}

void BellSoundPlayer::beep()
{
    if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        xcb_bell(x11->connection(), 0);
        xcb_flush(x11->connection());
    }
}

} // namespace brevlin
