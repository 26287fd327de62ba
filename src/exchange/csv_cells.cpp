#include "exchange/csv_cells.h"

#include <algorithm>

namespace brevlin {

namespace {

// No cell of anybody's is longer; a quote that nothing closes is not looked for any further.
constexpr std::size_t longestQuoted = std::size_t{1} << 20;

bool readsAsFormula(std::string_view text)
{
    const std::size_t first = text.find_first_not_of('\'');
    return first != std::string_view::npos &&
           std::string_view{"=+-@\t\r\n"}.find(text[first]) != std::string_view::npos;
}

} // namespace

void appendTextCell(std::string& row, std::string_view text)
{
    const bool isGuarded = readsAsFormula(text);
    if (text.find_first_of("\",\r\n") == std::string_view::npos) {
        row.append(isGuarded ? 1 : 0, '\'').append(text);
        return;
    }
    row.append(isGuarded ? "\"'" : "\"");
    for (const char character : text) {
        row.append(character == '"' ? 2 : 1, character);
    }
    row += '"';
}

std::string_view unguardedCell(std::string_view cell)
{
    return cell.starts_with('\'') && readsAsFormula(cell) ? cell.substr(1) : cell;
}

bool CsvReader::isAtLineEnd() const
{
    return m_at >= m_text.size() || m_text[m_at] == '\n' || m_text[m_at] == '\r';
}

void CsvReader::skipLineEnd()
{
    if (m_at < m_text.size()) {
        m_at += m_text.substr(m_at).starts_with("\r\n") ? 2 : 1;
        ++m_line;
    }
}

void CsvReader::skipLine()
{
    m_at = std::min(m_text.find_first_of("\r\n", m_at), m_text.size());
    skipLineEnd();
}

bool CsvReader::next(std::vector<std::string>& cells)
{
    while (m_at < m_text.size() && isAtLineEnd()) {
        skipLineEnd();
    }
    if (m_at >= m_text.size()) {
        return false;
    }
    m_rowLine = m_line;
    const std::size_t begin = m_at;
    m_isWellFormed = readRow(cells);
    if (m_isWellFormed) {
        skipLineEnd();
    } else {
        m_at = begin;
        m_line = m_rowLine;
        skipLine();
    }
    return true;
}

bool CsvReader::readRow(std::vector<std::string>& cells)
{
    std::size_t count = 0;
    for (;;) {
        if (count == cells.size()) {
            cells.emplace_back();
        }
        std::string& cell = cells[count++];
        cell.clear();
        if (m_at < m_text.size() && m_text[m_at] == '"') {
            if (!readQuoted(cell)) {
                return false;
            }
        } else {
            const std::size_t begin = m_at;
            while (!isAtLineEnd() && m_text[m_at] != m_separator) {
                ++m_at;
            }
            cell = m_text.substr(begin, m_at - begin);
        }
        if (isAtLineEnd()) {
            cells.resize(count);
            return true;
        }
        if (m_text[m_at] != m_separator) {
            return false;
        }
        ++m_at;
    }
}

bool CsvReader::readQuoted(std::string& cell)
{
    const std::string_view reachable = m_text.substr(0, std::min(m_text.size(), m_at + longestQuoted));
    for (++m_at;; ++m_at) {
        const std::size_t quote = reachable.find('"', m_at);
        if (quote == std::string_view::npos) {
            return false;
        }
        const std::string_view part = m_text.substr(m_at, quote - m_at);
        for (std::size_t index = 0; index < part.size(); ++index) {
            // CR LF is one line break.
            m_line +=
                part[index] == '\n' || (part[index] == '\r' && part.substr(index + 1, 1) != "\n") ? 1 : 0;
        }
        cell += part;
        m_at = quote + 1;
        if (m_at >= m_text.size() || m_text[m_at] != '"') {
            return true;
        }
        cell += '"';
    }
}

} // namespace brevlin
