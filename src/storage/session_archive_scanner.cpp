#include "storage/session_archive_scanner.h"

#include "storage/session_archive.h"
#include "storage/session_record_fields.h"

#include <simdjson.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <utility>

namespace brevlin {

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Reads one value after the other; each gives false where another text stands.
class Scanner final
{
public:
    explicit Scanner(std::string_view text) : m_at(text.data()), m_end(text.data() + text.size()) {}

    bool isAtEnd() const { return m_at == m_end; }
    bool literal(std::string_view expected)
    {
        const bool isThere = left() >= expected.size() && std::equal(expected.begin(), expected.end(), m_at);
        m_at += isThere ? expected.size() : 0;
        return isThere;
    }

    bool value(bool& result)
    {
        result = literal("true");
        return result || literal("false");
    }
    bool value(std::int64_t& result)
    {
        Number number;
        if (!scan(number) || !number.isInteger) {
            return false;
        }
        result = number.isNegative ? -number.digits : number.digits;
        return true;
    }
    bool value(double& result)
    {
        Number number;
        const char* begin = m_at;
        if (!scan(number)) {
            return false;
        }
        // Below these limits both are exact, and so the quotient is the nearest double.
        constexpr std::int64_t largestExact = std::int64_t{1} << 53;
        if (number.isInteger) {
            result = static_cast<double>(number.isNegative ? -number.digits : number.digits);
        } else if (number.decimals >= 0 && number.digits <= largestExact) {
            result = static_cast<double>(number.digits) / powersOfTen.at(static_cast<std::size_t>(number.decimals));
            result = number.isNegative ? -result : result;
        } else {
            const auto [end, error] = std::from_chars(begin, m_at, result);
            return error == std::errc{} && end == m_at;
        }
        return true;
    }
    bool value(Seconds& result)
    {
        double number = 0.0;
        const bool isThere = value(number);
        result = Seconds{number};
        return isThere;
    }
    bool value(Instant& result)
    {
        Seconds sinceReference{0.0};
        const bool isThere = value(sinceReference);
        result = Instant{sinceReference};
        return isThere;
    }
    bool value(Uuid& result)
    {
        std::string_view text;
        const auto uuid = value(text) ? Uuid::fromText(text) : std::nullopt;
        result = uuid.value_or(Uuid{});
        return uuid.has_value();
    }
    template <typename E>
    bool value(StoredRawValue<E>& result)
    {
        std::string_view text;
        const bool isThere = value(text);
        result = StoredRawValue<E>(text);
        return isThere;
    }
    bool value(SharedText& result)
    {
        std::string_view text;
        const bool isThere = value(text);
        result = m_pool.shared(text);
        return isThere;
    }
    /// The view holds until the next text.
    bool value(std::string_view& result)
    {
        if (m_at == m_end || *m_at != '"') {
            return false;
        }
        const char* begin = ++m_at;
        unsigned char all = 0;
        for (; m_at != m_end && *m_at != '"' && *m_at != '\\'; ++m_at) {
            const auto character = static_cast<unsigned char>(*m_at);
            if (character < 0x20) {
                return false;
            }
            all |= character;
        }
        result = {begin, static_cast<std::size_t>(m_at - begin)};
        if (m_at != m_end && *m_at == '\\') {
            return unescape(begin, result);
        }
        return literal("\"") && (all < 0x80 || simdjson::validate_utf8(result.data(), result.size()));
    }

private:
    struct Number
    {
        std::int64_t digits = 0; // with those behind the point
        int decimals = 0;        // or -1 where the digits do not tell the number
        bool isInteger = true;
        bool isNegative = false;
    };

    static constexpr auto powersOfTen =
        std::to_array({1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                       1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18});

    std::size_t left() const { return static_cast<std::size_t>(m_end - m_at); }

    // A number as JSON has it; of at most 18 digits before the point.
    bool scan(Number& number)
    {
        constexpr std::ptrdiff_t mostDigits = 18;
        number.isNegative = literal("-");
        const char* begin = m_at;
        scanDigits(number);
        const std::ptrdiff_t count = m_at - begin;
        if (count == 0 || count > mostDigits || (*begin == '0' && count > 1)) {
            return false;
        }
        if (m_at != m_end && *m_at == '.') {
            const char* point = m_at++;
            scanDigits(number);
            number.isInteger = false;
            number.decimals = static_cast<int>(m_at - point) - 1;
            if (number.decimals == 0) {
                return false;
            }
            if (number.decimals + count > mostDigits) {
                number.decimals = -1;
            }
        }
        if (m_at != m_end && *m_at == 'e') {
            m_at += left() > 1 && (m_at[1] == '-' || m_at[1] == '+') ? 2 : 1;
            const char* exponent = m_at;
            scanDigits(number);
            number.isInteger = false;
            number.decimals = -1;
            return m_at != exponent;
        }
        return true;
    }
    void scanDigits(Number& number)
    {
        // More than fit are counted all the same, and then not used.
        std::uint64_t digits = static_cast<std::uint64_t>(number.digits);
        for (; m_at != m_end && isDigit(*m_at); ++m_at) {
            digits = digits * 10 + static_cast<std::uint64_t>(*m_at - '0');
        }
        number.digits = static_cast<std::int64_t>(digits);
    }

    // A text with an escape: the library reads this one value.
    bool unescape(const char* begin, std::string_view& result)
    {
        for (; m_at != m_end && *m_at != '"'; ++m_at) {
            m_at += *m_at == '\\' && left() > 1 ? 1 : 0;
        }
        if (!literal("\"")) {
            return false;
        }
        const simdjson::padded_string quoted(begin - 1, static_cast<std::size_t>(m_at - begin) + 1);
        return m_parser.parse(quoted).get(result) == simdjson::SUCCESS;
    }

    const char* m_at;
    const char* m_end;
    TextPool m_pool;
    simdjson::dom::parser m_parser; // holds the text that was unescaped last
};

template <std::size_t... index>
bool scanRecord(Scanner& scanner, SessionRecord& record, std::index_sequence<index...> /*all*/)
{
    return ((scanner.literal(index == 0 ? "{\"" : ",\"") &&
             scanner.literal(std::get<index>(sessionRecordFields).name) && scanner.literal("\":") &&
             scanner.value(std::get<index>(sessionRecordFields).of(record))) &&
            ...) &&
           scanner.literal("}");
}

} // namespace

std::optional<std::vector<SessionRecord>> scanSessionArchive(std::string_view text, std::size_t spareRecords)
{
    constexpr std::string_view closing = R"(],"version":1})";
    static_assert(sessionArchiveVersion == 1);
    constexpr std::size_t shortestRecord = 256; // nearly; a history of shorter ones just grows
    std::vector<SessionRecord> records;
    records.reserve(text.size() / shortestRecord + spareRecords);
    Scanner scanner(text);
    if (!scanner.literal(sessionArchiveOpening)) {
        return std::nullopt;
    }
    do {
        if (!scanRecord(scanner, records.emplace_back(),
                        std::make_index_sequence<std::tuple_size_v<decltype(sessionRecordFields)>>())) {
            return std::nullopt;
        }
    } while (scanner.literal(","));
    return scanner.literal(closing) && scanner.isAtEnd() ? std::optional{std::move(records)} : std::nullopt;
}

} // namespace brevlin
