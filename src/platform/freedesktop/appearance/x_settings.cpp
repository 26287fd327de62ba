#include "platform/freedesktop/appearance/x_settings.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace brevlin {

namespace {

enum class SettingType : std::uint32_t { integer = 0, text = 1, color = 2 };

/// Numbers and texts from the front to the back. Beyond the end everything is 0 and empty.
class PropertyReader final
{
public:
    explicit PropertyReader(std::string_view bytes) : m_rest(bytes)
    {
        constexpr std::uint32_t mostSignificantFirst = 1;
        m_isBigEndian = number(1) == mostSignificantFirst;
        skip(3);
    }

    bool isAtEnd() const { return m_rest.empty(); }
    void skip(std::size_t length) { m_rest.remove_prefix(std::min(length, m_rest.size())); }

    std::uint32_t number(std::size_t length)
    {
        std::uint32_t value = 0;
        for (std::size_t index = 0; index < length && index < m_rest.size(); ++index) {
            const auto byte = static_cast<std::uint8_t>(m_rest[index]);
            constexpr std::size_t bits = 8;
            value |= std::uint32_t{byte} << bits * (m_isBigEndian ? length - 1 - index : index);
        }
        skip(length);
        return value;
    }

    // Padded to a multiple of four bytes.
    std::string text(std::size_t length)
    {
        std::string result(m_rest.substr(0, length));
        skip((length + 3) / 4 * 4);
        return result;
    }

private:
    std::string_view m_rest;
    bool m_isBigEndian = false;
};

} // namespace

XSettings readXSettings(std::string_view bytes)
{
    XSettings settings;
    PropertyReader reader(bytes);
    reader.number(4); // the serial number of the last change
    const std::uint32_t count = reader.number(4);
    for (std::uint32_t index = 0; index < count && !reader.isAtEnd(); ++index) {
        const auto type = static_cast<SettingType>(reader.number(1));
        reader.skip(1);
        const std::uint32_t nameLength = reader.number(2);
        const std::string name = reader.text(nameLength);
        reader.number(4); // the serial number of its own last change
        switch (type) {
        case SettingType::integer:
            settings.numbers[name] = static_cast<int>(reader.number(4));
            break;
        case SettingType::text: {
            const std::uint32_t length = reader.number(4);
            settings.texts[name] = reader.text(length);
            break;
        }
        case SettingType::color:
            reader.skip(8);
            break;
        default:
            return settings; // its length is not known
        }
    }
    return settings;
}

} // namespace brevlin
