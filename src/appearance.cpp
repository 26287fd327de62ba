#include "appearance.h"

#include "picture_sender.h"
#include "platform/freedesktop/appearance/portal_desktop_settings.h"
#include "platform/window_system.h"
#include "storage/main_window_store.h"
#include "ui/controls/brevlin_style.h"

#include <QApplication>

#include <utility>

namespace brevlin {

namespace {

// How long the first window of all waits for the desktop to say whether it is light or dark, so that it does
// not flash. The answer takes long only where it is the first that this session asks for, and no time where
// nobody gives any. Later ones look as the last one did until then.
constexpr Seconds longestWaitForAppearance{1.0};

ColorScheme schemeOf(DesktopSettings::ColorScheme scheme)
{
    return scheme == DesktopSettings::ColorScheme::dark ? ColorScheme::dark : ColorScheme::light;
}

} // namespace

Appearance::Appearance(PortalDesktopSettings& settings, MainWindowStore& store, WindowSystem& windowSystem)
    : m_settings(settings)
    , m_store(store)
    , m_style(new BrevlinStyle)
    , m_ofPalette(Theme::of(QApplication::palette()).scheme())
    , m_wasDark(store.wasDark())
{
    QApplication::setStyle(m_style);
    m_style->setCompositing([&windowSystem] { return windowSystem.isComposited(); });
    m_style->setPictureSender(pictureSender(windowSystem));
    const auto last = m_wasDark.value_or(false) ? ColorScheme::dark : ColorScheme::light;
    showColors(m_wasDark ? last : m_ofPalette);
    m_settings.setChangeHandler([this] { apply(); });
}

Appearance::~Appearance()
{
    m_settings.setChangeHandler({});
}

Seconds Appearance::firstWait() const
{
    return m_wasDark ? Seconds::zero() : longestWaitForAppearance;
}

void Appearance::apply()
{
    const auto wanted = m_settings.colorScheme();
    showColors(wanted ? schemeOf(*wanted) : m_ofPalette);
    const bool isDark = m_shown == ColorScheme::dark;
    if (std::exchange(m_wasDark, isDark) != isDark) {
        [[maybe_unused]] const auto saved = m_store.saveIsDark(isDark); // a convenience
    }
    m_style->setReducesMotion(m_settings.reducesMotion());
    if (m_changed) {
        m_changed();
    }
}

void Appearance::showColors(ColorScheme scheme)
{
    if (std::exchange(m_shown, scheme) != scheme) {
        QApplication::setPalette(Theme::palette(scheme));
    }
}

} // namespace brevlin
