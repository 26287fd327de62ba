#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

// CSV by RFC 4180, https://www.rfc-editor.org/rfc/rfc4180.

/// Appends a cell, in quotes where it needs them. A spreadsheet takes what begins with = + - @ for a formula,
/// also behind a tab or a line break: an apostrophe goes before such a text, and before one that reads as if
/// it had got it already, so that unguardedCell() gives exactly this text back.
/// https://owasp.org/www-community/attacks/CSV_Injection
void appendTextCell(std::string& row, std::string_view text);
std::string_view unguardedCell(std::string_view cell);

/// Reads rows one by one. A row that breaks the rules (text behind a closing quote, a quote that nothing
/// closes) ends with its first line, so that it takes no other with it.
class CsvReader final
{
public:
    CsvReader(std::string_view text, char separator) : m_text(text), m_separator(separator) {}

    /// Gives the cells of the next row that is not empty; false behind the last one.
    bool next(std::vector<std::string>& cells);
    /// Whether that row kept to the rules; else its cells say nothing.
    bool isWellFormed() const { return m_isWellFormed; }
    /// The line that it began on, from 1.
    std::size_t line() const { return m_rowLine; }
    /// How much of the text has been read, in bytes.
    std::size_t position() const { return m_at; }

private:
    bool readRow(std::vector<std::string>& cells);
    bool readQuoted(std::string& cell);
    bool isAtLineEnd() const;
    void skipLineEnd();
    void skipLine();

    std::string_view m_text;
    char m_separator;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
    std::size_t m_rowLine = 1;
    bool m_isWellFormed = true;
};

} // namespace brevlin
