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

TEST(LaunchAtLoginService, changes_the_item_only_where_that_is_needed_and_tells_the_status_after_it)
{
    struct Case
    {
        Item before;
        bool enable;
        int changes;
        Status after;
    };
    for (const Case& c : {Case{Item::notRegistered, true, 1, Status::requiresApproval},
                          {Item::notFound, true, 1, Status::requiresApproval},
                          {Item::enabled, true, 0, Status::enabled},
                          {Item::requiresApproval, true, 0, Status::requiresApproval},
                          {Item::enabled, false, 1, Status::disabled},
                          {Item::requiresApproval, false, 1, Status::disabled},
                          {Item::notFound, false, 1, Status::disabled},
                          {Item::notRegistered, false, 0, Status::disabled}}) {
        test::FakeLoginItem item;
        item.current = c.before;
        item.afterRegistering = Item::requiresApproval;
        LaunchAtLoginService service(item);
        EXPECT_EQ(*setEnabled(service, c.enable), c.after) << static_cast<int>(c.before) << c.enable;
        EXPECT_EQ(item.changes, c.changes) << static_cast<int>(c.before) << c.enable;
    }
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
