#include "platform/freedesktop/login/autostart_entry.h"

#include <functional>

namespace brevlin {

namespace {

constexpr std::string_view groupHeader = "[Desktop Entry]";

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blank = " \t\r";
    const std::size_t begin = text.find_first_not_of(blank);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blank) - begin + 1);
}

/// One line, and what it says where it is a key of the group that matters.
struct Line
{
    std::string_view text;
    std::string_view key;
    std::string_view value;
};

// Line by line rather than by GKeyFile or QSettings: an entry that the user has edited keeps its order, its
// comments and the lines that say nothing to us, and a faulty line does not make the others unreadable.
void forEachLine(std::string_view document, const std::function<void(const Line&)>& visit)
{
    bool isInGroup = false;
    while (!document.empty()) {
        const std::size_t end = document.find('\n');
        Line line{document.substr(0, end), {}, {}};
        document.remove_prefix(end == std::string_view::npos ? document.size() : end + 1);
        const std::string_view content = trimmed(line.text);
        if (content.starts_with('[')) {
            isInGroup = content == groupHeader;
        } else if (const std::size_t equals = content.find('=');
                   isInGroup && !content.starts_with('#') && equals != std::string_view::npos) {
            line.key = trimmed(content.substr(0, equals));
            line.value = trimmed(content.substr(equals + 1));
        }
        visit(line);
    }
}

} // namespace

std::optional<AutostartEntry> parseAutostartEntry(std::string_view document)
{
    bool hasGroup = false;
    AutostartEntry entry;
    forEachLine(document, [&](const Line& line) {
        hasGroup = hasGroup || trimmed(line.text) == groupHeader;
        if (line.key == "Exec") {
            entry.command = line.value;
        } else if ((line.key == "Hidden" && line.value == "true") ||
                   (line.key == "X-GNOME-Autostart-enabled" && line.value == "false")) {
            entry.isEnabled = false;
        }
    });
    return hasGroup ? std::optional{entry} : std::nullopt;
}

std::string execValue(std::string_view programPath)
{
    // Two layers: the quoting of arguments, and then the escaping of every string value.
    std::string quoted = "\"";
    for (const char character : programPath) {
        if (character == '"' || character == '`' || character == '$' || character == '\\') {
            quoted += '\\';
        } else if (character == '%') {
            quoted += '%';
        }
        quoted += character;
    }
    quoted += '"';
    std::string escaped;
    for (const char character : quoted) {
        escaped += character == '\\' ? "\\\\" : std::string(1, character);
    }
    return escaped;
}

std::string execProgram(std::string_view exec)
{
    // The layers of execValue() in the opposite order.
    std::string unescaped;
    for (std::size_t at = 0; at < exec.size(); ++at) {
        const bool isEscaped = exec[at] == '\\' && at + 1 < exec.size();
        if (isEscaped) {
            ++at;
        }
        unescaped += isEscaped && exec[at] == 's' ? ' ' : exec[at];
    }
    std::string program;
    bool isQuoted = false;
    for (std::size_t at = 0; at < unescaped.size(); ++at) {
        const char character = unescaped[at];
        const bool hasNext = at + 1 < unescaped.size();
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == ' ' && !isQuoted) {
            break;
        } else {
            const bool hidesNext =
                (character == '\\' && isQuoted) || (character == '%' && hasNext && unescaped[at + 1] == '%');
            program += hidesNext && hasNext ? unescaped[++at] : character;
        }
    }
    return program;
}

std::string makeAutostartEntry(std::string_view programPath)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Brevlin\n"
           "Comment=Focus timer\n"
           "Comment[zh_CN]=专注计时器\n"
           "Exec=" +
           execValue(programPath) +
           "\n"
           "Icon=com.quillmark.Brevlin\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

std::string withCommand(std::string_view document, std::string_view exec)
{
    std::string result;
    forEachLine(document, [&](const Line& line) {
        if (line.key == "Exec") {
            result += "Exec=";
            result += exec;
        } else {
            result += line.text;
        }
        result += '\n';
    });
    return result;
}

} // namespace brevlin
