#pragma once

#include <QStringList>
#include <QStringView>

namespace brevlin {

/// The fonts that the program brings along: Inter, Noto Sans CJK SC with the characters of the program's own
/// texts, and the figures of DejaVu Sans Mono. What is installed need not be looked through then before the
/// first text is drawn, which is a third of a start and a fifth of the memory.
namespace BuiltInFonts {

inline constexpr const char* latin = "Brevlin Latin";
inline constexpr const char* chinese = "Brevlin Chinese";
inline constexpr const char* figures = "Brevlin Figures";

/// Whether the fonts of the system are known beside the built-in ones.
enum class System { known, unknown };

/// Makes the built-in fonts known to Qt. Once, before the first font is looked for; where the system's are to
/// stay unknown, they are so until bringInSystem().
void install(System system);

/// Whether the built-in fonts have every character of a text.
bool cover(QStringView text);

/// Makes the system's fonts known as well, for a text with other characters, or for a window that is not of
/// the program's own making. The first time reads the system's configuration, the time of some frames;
/// afterwards nothing happens.
void bringInSystem();

} // namespace BuiltInFonts

} // namespace brevlin
