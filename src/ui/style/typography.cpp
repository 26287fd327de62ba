#include "ui/style/typography.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>

#include <dlfcn.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_MODULE_H

#include <algorithm>
#include <array>

namespace brevlin {

namespace {

// The key of the rounded companion in the application's table of fonts by class; no class bears this name.
constexpr const char* roundedFontKey = "brevlin::RoundedDesign";

constexpr std::array genericFamilies{"", "sans", "sans serif", "sans-serif"};
constexpr std::array preferredFamilies{"Inter", "Noto Sans", "Cantarell"};
constexpr std::array chineseFamilies{"Noto Sans CJK SC", "WenQuanYi Micro Hei"};
constexpr std::array roundedFamilies{"Nunito", "Quicksand", "Varela Round", "M PLUS Rounded 1c"};

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

/// A companion must come in a heavy cut: a synthetic bold of a thin one fills the counters of 6, 8 and 9.
bool isUsableCompanion(const QString& family)
{
    const QStringList styles = QFontDatabase::styles(family);
    const bool isHeavyEnough = std::ranges::any_of(styles, [&family](const QString& style) {
        return QFontDatabase::weight(family, style) >= QFont::DemiBold;
    });
    if (!isHeavyEnough)
        return false;
    const QFontMetrics metrics{QFont(family)};
    const QString needed = QStringLiteral("0123456789:");
    return std::ranges::all_of(needed, [&metrics](QChar character) { return metrics.inFont(character); });
}

/// Makes a text as heavy on a dark background as on a light one. For CFF fonts, as Inter and Noto Sans CJK are,
/// Qt has FreeType darken every stem and blends with a gamma that takes the surplus away again where the text is
/// dark, and adds to it where it is light: by a quarter, so that regular Chinese looks half bold. Without the
/// darkening Qt blends plainly, as for every other font and as other programs of the desktop do. It reads the
/// property with each font, so this comes before the first (https://freetype.org/freetype2/docs/reference/ft2-properties.html).
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

QString roundedCompanion()
{
    for (const char* name : roundedFamilies) {
        QString family = QString::fromLatin1(name);
        if (QFontDatabase::hasFamily(family) && isUsableCompanion(family))
            return family;
    }
    return {};
}

} // namespace

QFont textFont(TextRole role, QFont::Weight weight)
{
    const bool isHeadline = role == TextRole::headline && weight == QFont::Normal;
    return systemFont(pointsOf(role), isHeadline ? QFont::DemiBold : weight);
}

QFont systemFont(double points, QFont::Weight weight, FontDesign design)
{
    QFont font = design == FontDesign::rounded ? QApplication::font(roundedFontKey) : QApplication::font();
    if (design == FontDesign::monospaced) {
        QStringList families = font.families();
        // What an alias such as "monospace" stands for; the alias itself is no family that Qt would find.
        static const QString fixed = QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family();
        families.prepend(fixed);
        font.setFamilies(families);
        font.setFixedPitch(true);
    }
    font.setStyleName({});
    font.setWeight(weight);
    font.setPixelSize(qRound(points));
    return font;
}

QStringList applicationFamilies(const QString& desktopFamily, const QStringList& installed)
{
    const bool isGeneric = std::ranges::any_of(genericFamilies, [&desktopFamily](const char* generic) {
        return desktopFamily.compare(QLatin1String(generic), Qt::CaseInsensitive) == 0;
    });
    QString first = desktopFamily;
    if (isGeneric) {
        const auto found = std::ranges::find_if(preferredFamilies, [&installed](const char* family) {
            return installed.contains(QLatin1String(family));
        });
        if (found != preferredFamilies.end())
            first = QString::fromLatin1(*found);
    }
    QStringList families{first};
    for (const char* family : chineseFamilies) {
        if (installed.contains(QLatin1String(family)))
            families.append(QString::fromLatin1(family));
    }
    return families;
}

void installFonts()
{
    blendTextEvenly();
    QFont font = QApplication::font();
    const QStringList families = applicationFamilies(font.family(), QFontDatabase::families());
    font.setFamilies(families);
    font.setHintingPreference(QFont::PreferNoHinting); // the same shapes and widths at every scale factor
    font.setPixelSize(13);
    QApplication::setFont(font);

    const QString companion = roundedCompanion();
    if (companion.isEmpty())
        return;
    QFont rounded = font;
    rounded.setFamilies(QStringList{companion} + families);
    QApplication::setFont(rounded, roundedFontKey);
}

} // namespace brevlin
