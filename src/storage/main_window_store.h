#pragma once

#include "core/expected.h"
#include "storage/kept_document.h"

#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// The top left corner of a window, in points of the whole desktop.
struct WindowPlace
{
    int x = 0;
    int y = 0;

    bool operator==(const WindowPlace&) const = default;
};

/// Where the main window was and how large, in points.
struct WindowGeometry
{
    std::optional<WindowPlace> place; ///< none while nobody has moved it
    int width = 0;                    ///< of the window when it is not maximized
    int height = 0;                   ///< of the window when it is not maximized
    bool maximized = false;

    bool operator==(const WindowGeometry&) const = default;
};

/// Remembers the look of the main window. These are conveniences: what cannot be read counts as absent. What
/// is saved is written as soon as the disk takes it; an error means that it cannot be expressed.
class MainWindowStore final
{
public:
    static constexpr std::string_view sectionKey = "com.quillmark.brevlin.mainSection";
    static constexpr std::string_view geometryKey = "com.quillmark.brevlin.mainWindow";
    static constexpr std::string_view colorSchemeKey = "com.quillmark.brevlin.lastColorScheme";

    explicit MainWindowStore(const DocumentDisk& disk);

    /// The raw string of the section that was selected last.
    std::optional<std::string> section();
    Expected<void, DocumentError> saveSection(std::string_view rawValue);
    /// Width and height are greater than 0, and no number is beyond 100,000 on either side of 0.
    std::optional<WindowGeometry> geometry();
    Expected<void, DocumentError> saveGeometry(const WindowGeometry& geometry);

    /// Whether the window was dark when it was seen last.
    std::optional<bool> wasDark();
    Expected<void, DocumentError> saveIsDark(bool isDark);

private:
    KeptDocument m_section;
    KeptDocument m_geometry;
    KeptDocument m_colorScheme;
};

} // namespace brevlin
