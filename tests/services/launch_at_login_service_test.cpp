#include "services/launch_at_login_service.h"
#include "support/fake_desktop.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

using Item = LoginItem::Status;
using Status = LaunchAtLoginStatus;

Expected<Status, LaunchAtLoginServiceError> setEnabled(LaunchAtLoginService& service, bool enabled)
{
    Expected<Status, LaunchAtLoginServiceError> result = Status::unavailable;
    service.setEnabled(enabled, [&](const auto& status) { result = status; });
    return result;
}

TEST(LaunchAtLoginService, changes_the_item_only_where_that_is_needed)
{
    struct Case
    {
        Item before;
        bool enable;
        int changes;
    };
    for (const Case& c : {Case{Item::notRegistered, true, 1},
                          {Item::notFound, true, 1},
                          {Item::enabled, true, 0},
                          {Item::requiresApproval, true, 0},
                          {Item::enabled, false, 1},
                          {Item::requiresApproval, false, 1},
                          {Item::notFound, false, 1},
                          {Item::notRegistered, false, 0}}) {
        test::FakeLoginItem item;
        item.current = c.before;
        LaunchAtLoginService service(item);
        EXPECT_TRUE(setEnabled(service, c.enable));
        EXPECT_EQ(item.changes, c.changes) << static_cast<int>(c.before) << c.enable;
    }
}

TEST(LaunchAtLoginService, tells_the_status_after_the_change)
{
    test::FakeLoginItem item;
    item.afterRegistering = Item::requiresApproval;
    LaunchAtLoginService service(item);
    EXPECT_EQ(*setEnabled(service, true), Status::requiresApproval);
    EXPECT_EQ(*setEnabled(service, false), Status::disabled);
}

TEST(LaunchAtLoginService, keeps_a_failure_until_the_next_success)
{
    test::FakeLoginItem item;
    item.failure = "Permission denied";
    LaunchAtLoginService service(item);
    EXPECT_FALSE(setEnabled(service, true));
    EXPECT_EQ(service.lastError()->errorDescription(), "无法开启登录时启动：Permission denied");
    item.current = Item::enabled;
    EXPECT_FALSE(setEnabled(service, false));
    EXPECT_EQ(service.lastError()->errorDescription(), "无法关闭登录时启动：Permission denied");
    EXPECT_TRUE(setEnabled(service, true));
    EXPECT_FALSE(service.lastError());
}

} // namespace
} // namespace brevlin
