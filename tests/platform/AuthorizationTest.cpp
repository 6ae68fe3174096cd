#include <Security/Authorization.h>
#include <gtest/gtest.h>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"

namespace {

TEST(AuthorizationTest, RunsToolsOnlyWithTheAdministratorRight) {
    constexpr AuthorizationFlags mayAsk =
        kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights;
    FakeHost host;
    AuthorizationItem item = {"system.privilege.admin", 0, nullptr, 0};
    const AuthorizationRights rights = {1, &item};
    char* const arguments[] = {nullptr};
    AuthorizationRef ref = nullptr;
    ASSERT_EQ(AuthorizationCreate(nullptr, nullptr, mayAsk, &ref), errAuthorizationSuccess);
    const auto acquire = [&](AuthorizationFlags flags) {
        return AuthorizationCopyRights(ref, &rights, nullptr, flags, nullptr);
    };
    const auto run = [&] { return AuthorizationExecuteWithPrivileges(ref, "/tool", 0, arguments, nullptr); };

    EXPECT_EQ(acquire(kAuthorizationFlagExtendRights), errAuthorizationInteractionNotAllowed);
    host.rightAnswer = Host::RightAnswer::cancelled;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationCanceled);
    host.rightAnswer = Host::RightAnswer::denied;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationDenied);
    EXPECT_EQ(run(), errAuthorizationDenied);
    EXPECT_TRUE(host.privileged.empty());

    host.rightAnswer = Host::RightAnswer::granted;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationSuccess);
    EXPECT_EQ(run(), errAuthorizationDenied) << "not preauthorized";
    EXPECT_EQ(acquire(mayAsk | kAuthorizationFlagPreAuthorize), errAuthorizationSuccess);
    EXPECT_EQ(acquire(0), errAuthorizationSuccess) << "already held, so there is no prompt";
    EXPECT_EQ(run(), errAuthorizationSuccess);
    host.toolsThatDoNotStart = {"/tool"};
    EXPECT_EQ(run(), errAuthorizationToolExecuteFailure);
    item.name = "system.login.console";
    EXPECT_EQ(acquire(mayAsk), errAuthorizationDenied) << "no such right can be granted";

    EXPECT_EQ(CountLiveObjects(), LiveObjects{.authorizations = 1});
    EXPECT_EQ(AuthorizationFree(ref, 0), errAuthorizationSuccess);
    EXPECT_EQ(run(), errAuthorizationInvalidRef);
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
}

}  // namespace
