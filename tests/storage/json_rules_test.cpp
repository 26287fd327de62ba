#include "storage/snapshot_document.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

// A snapshot document with the given texts for one number and one count.
std::string document(const std::string& number, const std::string& count = "2",
                     const std::string& intention = "\"x\"")
{
    return R"({"phase":"focus","runState":"idle","intention":)" + intention + R"(,"plannedDuration":)" +
           number + R"(,"accumulatedPauseSeconds":0,"interruptionCount":0,"completedFocusCount":)" + count +
           "}";
}

std::string nested(int depth)
{
    const std::string json = document("1");
    return json.substr(0, json.size() - 1) + ",\"later\":" + std::string(std::size_t(depth), '[') +
           std::string(std::size_t(depth), ']') + "}";
}

TEST(JsonRules, every_doubtful_document_is_decided)
{
    const struct
    {
        const char* what;
        std::string json;
        bool isReadable;
    } cases[] = {
        {"plain", document("1500"), true},
        {"white space", " \n" + document("1500") + "\r\n\t ", true},
        {"byte order mark", "\xEF\xBB\xBF" + document("1500"), true},
        {"two byte order marks", "\xEF\xBB\xBF\xEF\xBB\xBF" + document("1500"), false},
        {"empty", "", false},
        {"only a byte order mark", "\xEF\xBB\xBF", false},
        {"UTF-16", std::string("{\0}\0", 4), false},
        {"exponent for a number", document("1.5e3"), true},
        {"beyond the largest number", document("1e999"), false},
        {"NaN", document("NaN"), false},
        {"Infinity", document("-Infinity"), false},
        {"leading zero", document("01"), false},
        {"true for a number", document("true"), false},
        {"text for a number", document("\"1500\""), false},
        {"null for a required number", document("null"), false},
        {"fraction of zero for an integer", document("1", "4.0"), true},
        {"exponent for an integer", document("1", "1e2"), true},
        {"fraction for an integer", document("1", "4.5"), false},
        {"true for an integer", document("1", "true"), false},
        {"largest integer", document("1", "9223372036854775807"), true},
        {"integer beyond 64 bits", document("1", "9223372036854775808"), false},
        {"integer beyond unsigned 64 bits", document("1", "18446744073709551616"), false},
        {"integral double beyond exactness", document("1", "9007199254740992.0"), false},
        {"null for an optional text", document("1", "2", "null"), true},
        {"number for a text", document("1", "2", "7"), false},
        {"invalid UTF-8", document("1", "2", "\"\xC3\x28\""), false},
        {"raw surrogate", document("1", "2", "\"\xED\xA0\x80\""), false},
        {"surrogate pair", document("1", "2", R"("\ud83d\ude00")"), true},
        {"lone high surrogate", document("1", "2", R"("\ud83d")"), false},
        {"high surrogate before a letter", document("1", "2", R"("\ud83d\u0041")"), false},
        {"raw control character", document("1", "2", "\"a\nb\""), false},
        {"escaped NUL", document("1", "2", R"("a\u0000b")"), true},
        {"trailing garbage", document("1") + "x", false},
        {"trailing comma", R"({"phase":"focus",})", false},
        {"comment", "/* */" + document("1"), false},
        {"not an object", "[" + document("1") + "]", false},
        {"depth within the limit", nested(500), true},
        {"depth of a million", nested(1'000'000), false},
        {"depth beyond 512", nested(513), false},
    };
    for (const auto& [what, json, isReadable] : cases) {
        const auto snapshot = decodeTimerSnapshot(json);
        EXPECT_EQ(bool(snapshot), isReadable) << what;
        if (!snapshot) {
            EXPECT_FALSE(snapshot.error().description.empty()) << what;
        }
    }
}

TEST(JsonRules, the_first_of_two_equal_keys_holds_and_null_is_as_good_as_a_missing_one)
{
    const auto snapshot =
        decodeTimerSnapshot(R"({"plannedDuration":7,"plannedDuration":"no",)" + document("9").substr(1));
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->plannedDuration, Seconds{7.0});
    EXPECT_EQ(decodeTimerSnapshot(document("1", "2", "null"))->intention, std::nullopt);
}

} // namespace
} // namespace brevlin
