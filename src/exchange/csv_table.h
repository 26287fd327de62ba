#pragma once

#include "exchange/csv_cells.h"
#include "exchange/csv_columns.h"
#include "exchange/import_builder.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace brevlin {

/// Without blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);
/// Of the letters of ASCII.
std::string lowerCase(std::string_view text);

/// The rows of a CSV, their cells by the names in its header.
class CsvTable final
{
public:
    explicit CsvTable(std::string_view text)
        : m_text(text.starts_with(byteOrderMark) ? text.substr(byteOrderMark.size()) : text)
        , m_reader(m_text, separatorOf(m_text))
    {
        if (m_reader.next(m_cells) && m_reader.isWellFormed()) {
            for (const std::string& cell : m_cells) {
                m_header.push_back(lowerCase(trimmed(cell)));
            }
        }
    }

    bool has(std::string_view column) const
    {
        return std::find(m_header.begin(), m_header.end(), column) != m_header.end();
    }
    bool next() { return m_reader.next(m_cells); }
    /// Whether each column has a cell, and no cell lacks a column.
    bool isWellFormed() const
    {
        return m_reader.isWellFormed() && m_cells.size() >= m_header.size() &&
               std::all_of(m_cells.begin() + static_cast<std::ptrdiff_t>(m_header.size()), m_cells.end(),
                           [](const std::string& cell) { return cell.empty(); });
    }
    /// Empty for a column that is not there; of several names the first that is.
    std::string_view cell(std::initializer_list<std::string_view> columns) const
    {
        for (const std::string_view column : columns) {
            const auto found = std::find(m_header.begin(), m_header.end(), column);
            if (found != m_header.end()) {
                return unguardedCell(m_cells[static_cast<std::size_t>(found - m_header.begin())]);
            }
        }
        return {};
    }
    std::size_t line() const { return m_reader.line(); }
    bool goesOn(ImportBuilder& builder) const { return builder.goesOn(m_reader.position(), m_text.size()); }

private:
    // Spreadsheets save with another one where the comma is the decimal mark.
    static char separatorOf(std::string_view text)
    {
        const std::string_view header = text.substr(0, text.find_first_of("\r\n"));
        constexpr std::string_view separators = ",;\t";
        return *std::max_element(separators.begin(), separators.end(), [header](char left, char right) {
            return std::count(header.begin(), header.end(), left) <
                   std::count(header.begin(), header.end(), right);
        });
    }

    std::string_view m_text;
    CsvReader m_reader;
    std::vector<std::string> m_cells;
    std::vector<std::string> m_header;
};

// An empty cell leaves the value as it is.
template <typename Number>
bool readNumber(std::string_view cell, Number& number)
{
    if (cell.empty()) {
        return true;
    }
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), number);
    return error == std::errc() && end == cell.data() + cell.size();
}

/// Has each row that keeps to the rules read; false where the import is to end.
template <typename ReadRow>
bool readRows(std::string_view text, ImportBuilder& builder, ReadRow readRow)
{
    CsvTable table(text);
    while (table.next()) {
        if (table.isWellFormed()) {
            readRow(table, builder);
        } else {
            builder.refuse(table.line(), ImportProblem::malformed);
        }
        if (!table.goesOn(builder)) {
            return false;
        }
    }
    return true;
}

} // namespace brevlin
