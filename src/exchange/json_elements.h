#pragma once

#include <cstddef>
#include <string_view>

namespace brevlin {

/// Finds the elements of a JSON array one by one, so that each is parsed alone, has a line number, and takes
/// no other with it where it is none. What stands before the array's bracket is not looked at.
class JsonElements final
{
public:
    explicit JsonElements(std::string_view text);

    /// False behind the last one.
    bool next();
    std::string_view element() const { return m_element; }
    /// Whether its brackets and quotes are closed.
    bool isComplete() const { return m_isComplete; }
    /// The line that it begins on, from 1.
    std::size_t line() const { return m_line; }
    std::size_t position() const { return m_at; }
    /// After an element that cannot be parsed: the next one begins where a line below its first begins with a
    /// brace, even if it seemed to belong to it.
    void goOnAtNextLine();

private:
    void advanceTo(std::size_t place);
    std::size_t elementEnd(std::size_t begin);
    std::size_t stringEnd(std::size_t quote) const;

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_countedTo = 0; // of m_line
    std::size_t m_line = 1;
    std::size_t m_begin = 0;
    std::string_view m_element;
    bool m_isComplete = true;
};

} // namespace brevlin
