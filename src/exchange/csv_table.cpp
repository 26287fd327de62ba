#include "exchange/csv_table.h"

namespace brevlin {

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    for (char& character : result) {
        character =
            character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
    }
    return result;
}

} // namespace brevlin
