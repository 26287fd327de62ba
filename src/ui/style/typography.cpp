#include "ui/style/typography.h"

#include "ui/style/built_in_fonts.h"

#include <QApplication>

#include <dlfcn.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_MODULE_H

#include <algorithm>
#include <array>

namespace brevlin {

namespace {

constexpr std::array genericFamilies{"", "sans", "sans serif", "sans-serif"};

double pointsOf(TextRole role)
{
    switch (role) {
    case TextRole::title:
        return 22;
    case TextRole::headline:
        return 15;
    case TextRole::body:
        return 13;
    case TextRole::callout:
        return 12;
    case TextRole::caption:
        return 11;
    case TextRole::smallCaption:
        return 10;
    }
    return 13;
}

/// Makes a text as heavy on a dark background as on a light one. For CFF fonts, as Inter and Noto Sans CJK
/// are, Qt has FreeType darken every stem and blends with a gamma that takes the surplus away again where the
/// text is dark, and adds to it where it is light: by a quarter, so that regular Chinese looks half bold.
/// Without the darkening Qt blends plainly, as for every other font and as other programs of the desktop do.
/// It reads the property with each font, so this comes before the first
/// (https://freetype.org/freetype2/docs/reference/ft2-properties.html).
void blendTextEvenly()
{
    // Exported by QtGui, though no header declares it; a Qt without it draws text its own way.
    using FreeType = FT_Library (*)();
    auto* freeType = reinterpret_cast<FreeType>(dlsym(RTLD_DEFAULT, "_Z14qt_getFreetypev"));
    if (freeType == nullptr)
        return;
    const FT_Bool isPlain = 1;
    FT_Property_Set(freeType(), "cff", "no-stem-darkening", &isPlain);
}

} // namespace

QFont textFont(TextRole role, QFont::Weight weight)
{
    const bool isHeadline = role == TextRole::headline && weight == QFont::Normal;
    return systemFont(pointsOf(role), isHeadline ? QFont::DemiBold : weight);
}

QFont systemFont(double points, QFont::Weight weight, FontDesign design)
{
    QFont font = QApplication::font();
    if (design == FontDesign::monospaced) {
        font.setFamilies(QStringList{QString::fromLatin1(BuiltInFonts::figures)} + font.families());
        font.setFixedPitch(true);
    }
    font.setStyleName({});
    font.setWeight(weight);
    font.setPixelSize(qRound(points));
    return font;
}

bool isGenericFamily(const QString& family)
{
    return std::ranges::any_of(genericFamilies, [&family](const char* generic) {
        return family.compare(QLatin1String(generic), Qt::CaseInsensitive) == 0;
    });
}

void installFonts()
{
    blendTextEvenly();
    QFont font = QApplication::font();
    const QString desktopFamily = font.family();
    const bool isGeneric = isGenericFamily(desktopFamily);
    BuiltInFonts::install(isGeneric ? BuiltInFonts::System::unknown : BuiltInFonts::System::known);
    // Chinese in its Simplified forms: the program's own words, then whatever else is written.
    QStringList families{QString::fromLatin1(BuiltInFonts::latin), QString::fromLatin1(BuiltInFonts::chinese),
                         QStringLiteral("Noto Sans CJK SC"), QStringLiteral("WenQuanYi Micro Hei")};
    if (!isGeneric) {
        families.prepend(desktopFamily); // which a desktop may name without having it
    }
    font.setFamilies(families);
    font.setHintingPreference(QFont::PreferNoHinting); // the same shapes and widths at every scale factor
    font.setPixelSize(13);
    QApplication::setFont(font);
}

} // namespace brevlin
