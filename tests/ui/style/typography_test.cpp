#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

/// The fonts that draw a text, and whether they have all of it.
struct Drawn
{
    QStringList families;
    bool isWhole = true;
};

Drawn drawn(const QString& text, QFont::Weight weight = QFont::Normal)
{
    QTextLayout layout(text, systemFont(13, weight));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    Drawn result;
    for (const QGlyphRun& run : layout.glyphRuns()) {
        result.families << run.rawFont().familyName();
        result.isWhole = result.isWhole && !run.glyphIndexes().contains(0);
    }
    result.families.sort();
    return result;
}

TEST(Typography, the_programs_own_fonts_draw_its_texts_and_the_systems_whatever_else_comes)
{
    EXPECT_EQ(drawn(QStringLiteral("Focus 专注"), QFont::DemiBold).families,
              (QStringList{QStringLiteral("Brevlin Chinese"), QStringLiteral("Brevlin Latin")}));
    EXPECT_TRUE(QFontDatabase::families().filter(QStringLiteral("Noto")).isEmpty());
    const std::string path = "/home/龘靐/Ångström/Ελλάδα"; // no text of ours
    const QString before = QString::fromStdString(path);
    EXPECT_FALSE(drawn(before).isWhole);
    EXPECT_TRUE(drawn(qtText(path)).isWhole);
    EXPECT_TRUE(drawn(QStringLiteral("Focus 专注")).families.contains(QStringLiteral("Brevlin Chinese")));
}

TEST(Typography, a_desktop_that_names_a_font_is_told_from_one_that_leaves_the_choice)
{
    for (const char* family : {"", "Sans", "sans-serif", "Sans Serif"})
        EXPECT_TRUE(isGenericFamily(QString::fromLatin1(family))) << family;
    for (const char* family : {"Ubuntu", "DejaVu Sans", "Noto Sans"})
        EXPECT_FALSE(isGenericFamily(QString::fromLatin1(family))) << family;
}

TEST(Typography, a_point_is_a_device_independent_pixel_whatever_the_desktop_says_about_dots_per_inch)
{
    EXPECT_EQ(systemFont(13).pixelSize(), 13);
    EXPECT_EQ(systemFont(11.5).pixelSize(), 12);
    EXPECT_EQ(QFontInfo(systemFont(54)).pixelSize(), 54);
}

} // namespace
} // namespace brevlin
