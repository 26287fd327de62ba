#include "storage/json/json_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace brevlin {
namespace {

template <typename T>
std::string written(T value)
{
    JsonWriter writer;
    writer.value(value);
    const auto text = std::move(writer).finish();
    return text ? *text : "refused";
}

TEST(JsonWriter, numbers_are_short_and_integral_ones_plain)
{
    EXPECT_EQ(written(1500.0), "1500");
    EXPECT_EQ(written(100000.0), "100000");
    EXPECT_EQ(written(-0.0), "0");
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(789012345.678), "789012345.678");
    EXPECT_EQ(written(9007199254740994.0), "9007199254740994");
    // An integer literal beyond 64 bits is one that readers refuse.
    EXPECT_EQ(written(18446744073709551616.0), "1.8446744073709552e+19");
    EXPECT_EQ(written(-9223372036854775808.0), "-9.223372036854776e+18");
    EXPECT_EQ(written(std::numeric_limits<double>::denorm_min()), "5e-324");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(JsonWriter, what_json_cannot_express_is_refused)
{
    EXPECT_EQ(written(std::nan("")), "refused");
    EXPECT_EQ(written(-std::numeric_limits<double>::infinity()), "refused");
    JsonWriter writer;
    writer.field("length", std::nan(""));
    EXPECT_EQ(std::move(writer).finish().error().description,
              "The value of \"length\" is not a finite number");
    for (const char* text : {"\xff", "\xff then plain", "\x80", "\xc0\x80", "\xed\xa0\x80", "\xe4\xb8"}) {
        EXPECT_EQ(written(std::string_view(text)), "refused");
    }
}

TEST(JsonWriter, texts_are_escaped_as_little_as_possible)
{
    EXPECT_EQ(written(std::string_view("Asia/Shanghai")), "\"Asia/Shanghai\"");
    EXPECT_EQ(written(std::string_view("专注 😀")), "\"专注 😀\"");
    EXPECT_EQ(written(std::string_view("\"plain")), R"("\"plain")");
    JsonWriter writer;
    writer.beginArray();
    writer.value(std::string_view(std::string(90'000, '\n')));
    writer.value(std::string_view(std::string(90'000, '\n')));
    writer.endArray();
    EXPECT_EQ(std::move(writer).finish()->size(), 360'007U);
    EXPECT_EQ(written(std::string_view("\"\\\b\f\n\r\t\x01\0", 9)), R"("\"\\\b\f\n\r\t\u0001\u0000")");
}

} // namespace
} // namespace brevlin
