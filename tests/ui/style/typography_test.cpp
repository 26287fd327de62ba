#include "ui/style/typography.h"

#include <QFontInfo>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(Typography, the_font_of_the_desktop_comes_first_and_chinese_last)
{
    const QString inter = QStringLiteral("Inter");
    const QString noto = QStringLiteral("Noto Sans");
    const QString dejaVu = QStringLiteral("DejaVu Sans");
    const QString chinese = QStringLiteral("Noto Sans CJK SC");
    const QString otherChinese = QStringLiteral("WenQuanYi Micro Hei");
    struct Case
    {
        QString desktop;
        QStringList installed;
        QStringList expected;
    };
    const Case cases[]{
        {QStringLiteral("Ubuntu"), {inter, chinese}, {QStringLiteral("Ubuntu"), chinese}},
        {dejaVu, {inter, dejaVu}, {dejaVu}},
        {QStringLiteral("Sans Serif"), {noto, inter, otherChinese, chinese}, {inter, chinese, otherChinese}},
        {QStringLiteral("sans"), {noto, otherChinese}, {noto, otherChinese}},
        {QString(), {dejaVu, chinese}, {QString(), chinese}},
    };
    for (const Case& entry : cases)
        EXPECT_EQ(applicationFamilies(entry.desktop, entry.installed), entry.expected);
}

TEST(Typography, a_point_is_a_device_independent_pixel_whatever_the_desktop_says_about_dots_per_inch)
{
    EXPECT_EQ(systemFont(13).pixelSize(), 13);
    EXPECT_EQ(systemFont(11.5).pixelSize(), 12);
    EXPECT_EQ(QFontInfo(systemFont(54)).pixelSize(), 54);
}

} // namespace
} // namespace brevlin
