#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// What matters to us of a desktop entry in an autostart folder
/// (https://specifications.freedesktop.org/autostart-spec/latest/).
struct AutostartEntry
{
    std::string command;   ///< the value of Exec as it stands, escaped
    bool isEnabled = true; ///< neither Hidden=true nor X-GNOME-Autostart-enabled=false

    bool operator==(const AutostartEntry&) const = default;
};

/// Reads the group [Desktop Entry]; nothing where there is none.
std::optional<AutostartEntry> parseAutostartEntry(std::string_view document);

/// The value of Exec that starts this program: quoted and escaped as
/// https://specifications.freedesktop.org/desktop-entry-spec/latest/exec-variables.html asks.
std::string execValue(std::string_view programPath);

/// The program that such a value starts: a path, or a name to be looked for in the path.
std::string execProgram(std::string_view exec);

/// A whole entry for this program.
std::string makeAutostartEntry(std::string_view programPath);
/// The document with its Exec line replaced; all else stays as the user or the desktop left it.
std::string withCommand(std::string_view document, std::string_view exec);

} // namespace brevlin
