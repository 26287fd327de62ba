#include "platform/freedesktop/appearance/gtk_theme.h"
#include "platform/freedesktop/appearance/portal_desktop_settings.h"
#include "platform/freedesktop/appearance/x_settings.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(DesktopAppearance, of_several_back_ends_the_first_that_says_something_holds)
{
    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    const QString gnome = QStringLiteral("org.gnome.desktop.interface");
    const QString scheme = QStringLiteral("color-scheme");
    const QString animations = QStringLiteral("enable-animations");
    const auto answers = firstAnswers({{appearance, {{scheme, 0U}}},
                                       {appearance, {{scheme, 2U}}},
                                       {appearance, {{scheme, 1U}}},
                                       {gnome, {{animations, false}}},
                                       {gnome, {{animations, true}}}});
    EXPECT_EQ(answers[appearance][scheme].toUInt(), 2U);
    EXPECT_FALSE(answers[gnome][animations].toBool()) << "false says something";
    EXPECT_FALSE(firstAnswers({{appearance, {{scheme, 0U}}}})[appearance].contains(scheme));
}

TEST(DesktopAppearance, a_dark_gtk_theme_is_known_by_its_name)
{
    for (const char* name : {"Adwaita-dark", "Adwaita:dark", "BlackMATE", "Mint-Y-Dark-Aqua",
                             "HighContrastInverse", "Breeze-Dark"}) {
        EXPECT_TRUE(isDarkGtkTheme(QString::fromLatin1(name))) << name;
    }
    for (const char* name : {"", "Adwaita", "Menta", "Arc-Darker", "Breeze"}) {
        EXPECT_FALSE(isDarkGtkTheme(QString::fromLatin1(name))) << name;
    }
}

TEST(DesktopAppearance, the_x_settings_are_read_in_both_byte_orders_and_when_cut_short)
{
    using namespace std::string_literals;
    // Xft/DPI = 98304, a colour, Net/ThemeName = "Menta".
    const std::string little = "\0\0\0\0\7\0\0\0\3\0\0\0"
                               "\0\0\7\0Xft/DPI\0\1\0\0\0\0\x80\1\0"
                               "\2\0\1\0C\0\0\0\1\0\0\0\1\0\2\0\3\0\4\0"
                               "\1\0\15\0Net/ThemeName\0\0\0\1\0\0\0\5\0\0\0Menta\0\0\0"s;
    const std::string big = "\1\0\0\0\0\0\0\7\0\0\0\1"
                            "\1\0\0\15Net/ThemeName\0\0\0\0\0\0\1\0\0\0\5Menta\0\0\0"s;
    const XSettings settings = readXSettings(little);
    EXPECT_EQ(settings.numbers.at("Xft/DPI"), 98'304);
    EXPECT_EQ(settings.texts.at("Net/ThemeName"), "Menta");
    EXPECT_EQ(readXSettings(big).texts.at("Net/ThemeName"), "Menta");
    for (std::size_t length = 0; length < little.size(); ++length) {
        EXPECT_LE(readXSettings(std::string_view(little).substr(0, length)).texts.size(), 1U);
    }
}

} // namespace
} // namespace brevlin
