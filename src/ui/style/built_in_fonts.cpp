#include "ui/style/built_in_fonts.h"

#include <QFontDatabase>
#include <QResource>

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <utility>

namespace brevlin {

namespace {

constexpr std::array files{"latin-Regular",   "latin-Medium", "latin-SemiBold", "latin-Bold",
                           "chinese-Regular", "chinese-Bold", "figures-Bold"};
// NOLINTNEXTLINE(*-avoid-c-arrays): compilers do not deduce the length of so long a std::array
constexpr char16_t characters[]{
#include "characters.inc"
};
static_assert(std::ranges::is_sorted(characters), "they are searched");

bool isSystemMissing = false;
int lastFont = -1;

int add(const char* file)
{
    const QResource resource(QStringLiteral(":/fonts/") + QLatin1String(file) + QStringLiteral(".font"));
    // The bytes are the program's own and stand where they are as long as it runs.
    return QFontDatabase::addApplicationFontFromData(QByteArray::fromRawData(
        reinterpret_cast<const char*>(resource.data()), static_cast<qsizetype>(resource.size())));
}

void setConfiguration(FcConfig* configuration)
{
    if (configuration != nullptr) {
        FcConfigSetCurrent(configuration);
        FcConfigDestroy(configuration);
    }
}

} // namespace

// Qt asks fontconfig for its current configuration, and reads the system's only where there is none.
void BuiltInFonts::install(System system)
{
    isSystemMissing = system == System::unknown;
    if (isSystemMissing) {
        setConfiguration(FcConfigCreate());
    }
    for (const char* file : files) {
        lastFont = add(file);
    }
}

bool BuiltInFonts::cover(QStringView text)
{
    return std::ranges::all_of(text, [](QChar character) {
        constexpr char16_t firstPrintable = u' ';
        const char16_t code = character.unicode();
        return code < firstPrintable || std::ranges::binary_search(characters, code);
    });
}

void BuiltInFonts::bringInSystem()
{
    if (!std::exchange(isSystemMissing, false)) {
        return;
    }
    setConfiguration(FcInitLoadConfigAndFonts());
    // Taking a font away makes Qt look for all of them anew.
    QFontDatabase::removeApplicationFont(lastFont);
    lastFont = add(files.back());
}

} // namespace brevlin
