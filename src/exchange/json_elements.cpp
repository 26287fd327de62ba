#include "exchange/json_elements.h"

#include <algorithm>

namespace brevlin {

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";
// None of ours is longer; a bracket that nothing closes is not looked for any further.
constexpr std::size_t longestElement = std::size_t{1} << 20;

} // namespace

JsonElements::JsonElements(std::string_view text) : m_text(text)
{
    const std::size_t bracket = text.find('[');
    m_at = bracket == std::string_view::npos ? text.size() : bracket + 1;
}

void JsonElements::advanceTo(std::size_t place)
{
    m_line += static_cast<std::size_t>(std::count(m_text.begin() + static_cast<std::ptrdiff_t>(m_countedTo),
                                                  m_text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
    m_countedTo = place;
}

bool JsonElements::next()
{
    m_begin = m_text.find_first_not_of(" \t\r\n,", m_at);
    if (m_begin == std::string_view::npos || m_text[m_begin] == ']') {
        m_at = m_text.size();
        return false;
    }
    advanceTo(m_begin);
    m_isComplete = true;
    m_at = elementEnd(m_begin);
    m_element = m_text.substr(m_begin, m_at - m_begin);
    return true;
}

std::size_t JsonElements::elementEnd(std::size_t begin)
{
    const std::size_t limit = std::min(m_text.size(), begin + longestElement);
    std::size_t depth = 0;
    for (std::size_t at = begin; at < limit; ++at) {
        const char character = m_text[at];
        if (character == '"') {
            at = stringEnd(at);
            if (at == std::string_view::npos) {
                break;
            }
        } else if (character == '{' || character == '[') {
            ++depth;
        } else if (depth == 0 && (character == ',' || character == ']')) {
            return at;
        } else if (character == '}' || character == ']') {
            depth -= depth > 0 ? 1 : 0;
        }
    }
    m_isComplete = depth == 0 && limit == m_text.size();
    return limit;
}

// A line break within a string means that nothing closes it.
std::size_t JsonElements::stringEnd(std::size_t quote) const
{
    std::size_t at = m_text.find_first_of("\"\\\n", quote + 1);
    while (at != std::string_view::npos && m_text[at] == '\\') {
        at = m_text.find_first_of("\"\\\n", at + 2);
    }
    return at != std::string_view::npos && m_text[at] == '"' ? at : std::string_view::npos;
}

void JsonElements::goOnAtNextLine()
{
    for (std::size_t line = m_text.find('\n', m_begin); line < m_at; line = m_text.find('\n', line + 1)) {
        const std::size_t first = m_text.find_first_not_of(whiteSpace, line);
        if (first == std::string_view::npos) {
            return;
        }
        if (m_text[first] == '{') {
            m_at = first;
            return;
        }
    }
}

} // namespace brevlin
