#include "storage/session_archive_scanner.h"

#include "storage/session_archive.h"
#include "storage/session_record_fields.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>

namespace brevlin {

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// `,"name":` of a field, or with a bracket for the first one.
template <std::size_t index>
constexpr auto fieldOpening = [] {
    constexpr std::string_view name = std::get<index>(sessionRecordFields).name;
    std::array<char, name.size() + 4> text{index == 0 ? '{' : ',', '"'};
    auto at = std::copy(name.begin(), name.end(), text.begin() + 2);
    *at++ = '"';
    *at = ':';
    return text;
}();

} // namespace

/// Reads one value after the other; each gives false where another text stands. The text ends with a NUL, so
/// only what is longer than a character is looked at for the end.
class SessionArchiveScanner::Values final
{
public:
    void readFrom(const std::string& text)
    {
        m_at = text.c_str();
        m_end = m_at + text.size();
    }
    const char* at() const { return m_at; }
    void goBackTo(const char* place) { m_at = place; }
    /// Of a size that the compiler knows, so that nothing is called.
    template <std::size_t size>
    bool literal(const std::array<char, size>& expected)
    {
        const bool isThere = m_end - m_at >= static_cast<std::ptrdiff_t>(size) &&
                             std::memcmp(m_at, expected.data(), size) == 0;
        m_at += isThere ? size : 0;
        return isThere;
    }
    bool literal(std::string_view expected)
    {
        const bool isThere = std::string_view{m_at, m_end}.starts_with(expected);
        m_at += isThere ? expected.size() : 0;
        return isThere;
    }
    bool literal(char expected)
    {
        const bool isThere = *m_at == expected;
        m_at += isThere ? 1 : 0;
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
            result = static_cast<double>(number.digits) /
                     powersOfTen.at(static_cast<std::size_t>(number.decimals));
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
        constexpr std::ptrdiff_t length = 36;
        if (!literal('"') || m_end - m_at < length) {
            return false;
        }
        const auto uuid = Uuid::fromText({m_at, static_cast<std::size_t>(length)});
        result = uuid.value_or(Uuid{});
        m_at += length;
        return uuid && literal('"');
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
        if (!literal('"')) {
            return false;
        }
        const char* begin = m_at;
        unsigned char all = 0;
        while (m_end - m_at >= atOnce && isPlain(eightAt(m_at))) {
            m_at += atOnce;
        }
        for (; *m_at != '"' && *m_at != '\\'; ++m_at) {
            const auto character = static_cast<unsigned char>(*m_at);
            if (character < 0x20) {
                return false;
            }
            all |= character;
        }
        result = {begin, static_cast<std::size_t>(m_at - begin)};
        if (*m_at == '\\') {
            return unescape(begin, result);
        }
        return literal('"') && (all < 0x80 || simdjson::validate_utf8(result.data(), result.size()));
    }

private:
    struct Number
    {
        std::int64_t digits = 0; // with those behind the point
        int decimals = 0;        // or -1 where the digits do not tell the number
        bool isInteger = true;
        bool isNegative = false;
    };

    static constexpr auto powersOfTen = std::to_array({1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10,
                                                       1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18});

    static constexpr std::ptrdiff_t atOnce = 8;
    static constexpr std::uint64_t ones = 0x0101010101010101;

    static std::uint64_t eightAt(const char* place)
    {
        std::uint64_t eight = 0;
        std::memcpy(&eight, place, atOnce);
        return eight;
    }
    // Whether all eight are ASCII and stand for themselves in a text. A borrow may only claim a plain one to
    // be none behind one that is none.
    static bool isPlain(std::uint64_t eight)
    {
        const auto hasZero = [](std::uint64_t bytes) {
            return (bytes - ones) & ~bytes;
        };
        const std::uint64_t found =
            eight | (eight - ones * 0x20) | hasZero(eight ^ (ones * '"')) | hasZero(eight ^ (ones * '\\'));
        return (found & (ones * 0x80)) == 0;
    }

    // A number as JSON has it; of at most 18 digits before the point.
    bool scan(Number& number)
    {
        constexpr std::ptrdiff_t mostDigits = 18;
        number.isNegative = literal('-');
        const char* begin = m_at;
        std::uint64_t digits = scanDigits(0);
        const std::ptrdiff_t count = m_at - begin;
        if (count == 0 || count > mostDigits || (*begin == '0' && count > 1)) {
            return false;
        }
        if (*m_at == '.') {
            const char* first = ++m_at;
            digits = scanDigits(digits);
            number.isInteger = false;
            number.decimals = count + (m_at - first) > mostDigits ? -1 : static_cast<int>(m_at - first);
            if (m_at == first) {
                return false;
            }
        }
        number.digits = static_cast<std::int64_t>(digits);
        if (literal('e')) {
            m_at += *m_at == '-' || *m_at == '+' ? 1 : 0;
            const char* exponent = m_at;
            scanDigits(0);
            number.isInteger = false;
            number.decimals = -1;
            return m_at != exponent;
        }
        return true;
    }
    // What does not fit is gone over all the same, and then not used.
    std::uint64_t scanDigits(std::uint64_t digits)
    {
        constexpr auto shifts = std::to_array<std::uint64_t>(
            {1, 10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000, 100'000'000});
        while (m_end - m_at >= atOnce) {
            std::uint64_t eight = eightAt(m_at);
            // The first digit stands in the lowest byte; the first that is none has the lowest bit here.
            const std::uint64_t others =
                ((eight & (ones * 0xF0)) | (((eight + ones * 0x06) & (ones * 0xF0)) >> 4U)) ^ (ones * 0x33);
            const auto count = static_cast<unsigned>(std::countr_zero(others)) / 8;
            if (count == 0) {
                return digits;
            }
            // Moved up behind zeros; then pairs, then fours, then all are put together.
            eight = (eight & (ones * 0x0F)) << (64 - 8 * count);
            eight = eight * (10 * 256 + 1) >> 8U;
            eight = (eight & 0x00FF00FF00FF00FF) * (100 * 65536 + 1) >> 16U;
            eight = (eight & 0x0000FFFF0000FFFF) * (10000 * 4294967296 + 1) >> 32U;
            digits = digits * shifts[count] + eight;
            m_at += count;
            if (count < atOnce) {
                return digits;
            }
        }
        for (; isDigit(*m_at); ++m_at) {
            digits = digits * 10 + static_cast<std::uint64_t>(*m_at - '0');
        }
        return digits;
    }

    // A text with an escape: the library reads this one value.
    bool unescape(const char* begin, std::string_view& result)
    {
        for (; *m_at != '"' && m_at != m_end; ++m_at) {
            m_at += *m_at == '\\' && m_end - m_at > 1 ? 1 : 0;
        }
        if (!literal('"')) {
            return false;
        }
        const simdjson::padded_string quoted(begin - 1, static_cast<std::size_t>(m_at - begin) + 1);
        return m_parser.parse(quoted).get(result) == simdjson::SUCCESS;
    }

    const char* m_at = nullptr;
    const char* m_end = nullptr;
    TextPool m_pool;
    simdjson::dom::parser m_parser; // holds the text that was unescaped last
};

namespace {

template <typename Values, std::size_t... index>
bool scanRecord(Values& scanner, SessionRecord& record, std::index_sequence<index...> /*all*/)
{
    return ((scanner.literal(fieldOpening<index>) &&
             scanner.value(std::get<index>(sessionRecordFields).of(record))) &&
            ...) &&
           scanner.literal('}');
}

} // namespace

SessionArchiveScanner::SessionArchiveScanner(std::size_t fileSize, Keep keep)
    : m_values(std::make_unique<Values>()), m_keep(keep)
{
    constexpr std::size_t shortRecord = 256; // characters; a history of shorter ones just grows
    m_records.reserve((keep == Keep::records ? fileSize / shortRecord : 0) + spareSessionRecords);
}

SessionArchiveScanner::~SessionArchiveScanner() = default;

bool SessionArchiveScanner::take(std::string_view piece)
{
    m_text += piece;
    m_values->readFrom(m_text);
    while (scanOn()) {
    }
    m_text.erase(0, static_cast<std::size_t>(m_values->at() - m_text.c_str()));
    if (m_keep == Keep::count) {
        forgetRecords();
    }
    // More than a record of ours has, unless it tells a novel.
    constexpr std::size_t longestRest = std::size_t{1} << 16;
    return m_text.size() < longestRest;
}

// One step on; false where more of the text is needed, or it has another form.
bool SessionArchiveScanner::scanOn()
{
    switch (m_next) {
    case Next::opening:
        if (!m_values->literal(sessionArchiveOpening)) {
            return false;
        }
        m_next = Next::record;
        return true;
    case Next::record: {
        const char* before = m_values->at();
        if (!scanRecord(*m_values, m_records.emplace_back(),
                        std::make_index_sequence<std::tuple_size_v<decltype(sessionRecordFields)>>())) {
            m_records.pop_back();
            m_values->goBackTo(before);
            return false;
        }
        m_next = Next::separator;
        return true;
    }
    case Next::separator:
        m_next = m_values->literal(',') ? Next::record : Next::separator;
        return m_next == Next::record;
    }
    return false;
}

std::optional<std::vector<SessionRecord>> SessionArchiveScanner::finish()
{
    static_assert(sessionArchiveVersion == 1);
    const bool isWhole = m_next == Next::separator && m_text == R"(],"version":1})";
    return isWhole && m_isSorted && std::is_sorted(m_records.begin(), m_records.end(), endedLater)
               ? std::optional{std::move(m_records)}
               : std::nullopt;
}

// All but the last one, which the next has to follow.
void SessionArchiveScanner::forgetRecords()
{
    if (m_records.size() > 1) {
        m_isSorted = m_isSorted && std::is_sorted(m_records.begin(), m_records.end(), endedLater);
        m_forgotten += m_records.size() - 1;
        m_records.erase(m_records.begin(), m_records.end() - 1);
    }
}

std::optional<std::size_t> SessionArchiveScanner::finishCount()
{
    const auto last = finish();
    return last ? std::optional{m_forgotten + last->size()} : std::nullopt;
}

Expected<std::vector<SessionRecord>, DocumentError> readSessionArchive(const std::string& document)
{
    SessionArchiveScanner scanner(document.size());
    if (scanner.take(document)) {
        if (auto records = scanner.finish()) {
            return *std::move(records);
        }
    }
    return decodeSessionArchive(document);
}

Expected<std::optional<std::size_t>, DocumentError> countSessionArchive(const DurableFile& files,
                                                                        const std::string& path)
{
    SessionArchiveScanner scanner(0, SessionArchiveScanner::Keep::count);
    bool isOurs = true;
    const auto stamp = files.readPieces(path, [&](std::string_view piece) {
        isOurs = scanner.take(piece);
        return isOurs;
    });
    if (!stamp || !*stamp) {
        return stamp ? Expected<std::optional<std::size_t>, DocumentError>{std::nullopt}
                     : Unexpected{documentError(stamp.error())};
    }
    if (const auto count = isOurs ? scanner.finishCount() : std::nullopt) {
        return count;
    }
    const auto text = files.read(path);
    if (!text) {
        return Unexpected{documentError(text.error())};
    }
    const auto records = decodeSessionArchive(text->value_or(std::string()));
    return records ? Expected<std::optional<std::size_t>, DocumentError>{records->size()}
                   : Unexpected{records.error()};
}

} // namespace brevlin
