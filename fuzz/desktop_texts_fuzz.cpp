// What the desktop keeps in its own forms: the entry for login, and the X settings.

#include "platform/freedesktop/appearance/x_settings.h"
#include "platform/freedesktop/login/autostart_entry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace brevlin;

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    readXSettings(text);
    execProgram(text);
    if (const auto entry = parseAutostartEntry(text); entry && !entry->command.empty()) {
        const std::string exec = execValue("/usr/bin/brevlin");
        const auto changed = parseAutostartEntry(withCommand(text, exec));
        require(changed && changed->command == exec && changed->isEnabled == entry->isEnabled);
    }
    // No path holds a line break or a null, and what is written into an entry is read back as it was.
    if (text.find_first_of(std::string_view("\n\r\0", 3)) == std::string::npos && !text.empty()) {
        require(execProgram(execValue(text)) == text);
        const auto made = parseAutostartEntry(makeAutostartEntry(text));
        require(made && execProgram(made->command) == text);
    }
    return 0;
}
