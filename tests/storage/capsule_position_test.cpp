#include "storage/capsule_position.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

constexpr const char* key = "Brevlin.topPanel.position.v1";

TEST(CapsulePositionStore, writes_and_reads_the_documented_form)
{
    test::FakeDisk disk;
    auto& defaults = disk.defaults;
    CapsulePositionStore store(disk);
    EXPECT_EQ(store.load(), std::nullopt);
    const SavedPosition position{4'294'967'295U, 0.5, 0.25, 5, HorizontalAnchor::center};
    ASSERT_TRUE(store.save(position));
    EXPECT_EQ(
        defaults.values[key],
        R"({"displayID":4294967295,"xFraction":0.5,"yFraction":0.25,"version":5,"horizontalAnchor":"center"})");
    EXPECT_EQ(store.load(), position);
    defaults.values[key] = R"({"displayID":0,"xFraction":1,"yFraction":0})";
    EXPECT_EQ(store.load(), (SavedPosition{0, 1, 0, std::nullopt, std::nullopt}));
}

TEST(CapsulePositionStore, what_cannot_be_read_counts_as_absent_and_stays)
{
    for (const char* document : {"", "{}", R"({"xFraction":1})", R"({"xFraction":"1","yFraction":0})",
                                 R"({"displayID":-1,"xFraction":1,"yFraction":0})",
                                 R"({"displayID":4294967296,"xFraction":1,"yFraction":0})",
                                 R"({"xFraction":1,"yFraction":0,"horizontalAnchor":"middle"})"}) {
        test::FakeDisk disk;
        auto& defaults = disk.defaults;
        defaults.values[key] = document;
        EXPECT_EQ(CapsulePositionStore(disk).load(), std::nullopt) << document;
        EXPECT_EQ(defaults.values[key], document);
        defaults.unreadable = {key};
        EXPECT_EQ(CapsulePositionStore(disk).load(), std::nullopt);
    }
}

} // namespace
} // namespace brevlin
