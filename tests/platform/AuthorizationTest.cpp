#include <Security/Authorization.h>
#include <gtest/gtest.h>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"

namespace {

constexpr AuthorizationFlags mayAsk = kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights;

TEST(Authorization, OnlyTheHeldAdministratorRightRunsTools) {
    FakeHost host;
    AuthorizationItem item = {"system.privilege.admin", 0, nullptr, 0};
    const AuthorizationRights rights = {1, &item};
    char argument[] = "-rf";
    char* const arguments[] = {argument, nullptr};
    AuthorizationRef ref = nullptr;
    ASSERT_EQ(AuthorizationCreate(nullptr, nullptr, mayAsk, &ref), errAuthorizationSuccess);
    const auto acquire = [&](AuthorizationFlags flags) {
        return AuthorizationCopyRights(ref, &rights, nullptr, flags, nullptr);
    };
    const auto run = [&] { return AuthorizationExecuteWithPrivileges(ref, "/tool", 0, arguments, nullptr); };

    EXPECT_EQ(run(), errAuthorizationDenied);
    EXPECT_EQ(acquire(kAuthorizationFlagExtendRights), errAuthorizationInteractionNotAllowed);
    EXPECT_FALSE(host.rightAskedFor);
    host.rightAnswer = Host::RightAnswer::cancelled;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationCanceled);
    host.rightAnswer = Host::RightAnswer::denied;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationDenied);
    EXPECT_EQ(run(), errAuthorizationDenied);
    EXPECT_TRUE(host.privileged.empty());

    host.rightAnswer = Host::RightAnswer::granted;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationSuccess);
    host.rightAskedFor = false;
    EXPECT_EQ(acquire(mayAsk), errAuthorizationSuccess);
    EXPECT_FALSE(host.rightAskedFor) << "it holds the right already";
    EXPECT_EQ(run(), errAuthorizationSuccess);
    EXPECT_EQ(host.privileged, std::vector<std::string>{"/tool -rf"});
    host.toolsThatDoNotStart = {"/tool"};
    EXPECT_EQ(run(), errAuthorizationToolExecuteFailure);

    item.name = "system.login.console";
    EXPECT_EQ(acquire(mayAsk), errAuthorizationDenied) << "a right that nobody can give";
    AuthorizationRef second = nullptr;
    EXPECT_EQ(AuthorizationCreate(&rights, nullptr, mayAsk, &second), errAuthorizationDenied);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(CountLiveObjects(), LiveObjects{.authorizations = 1});

    EXPECT_EQ(AuthorizationFree(ref, 0), errAuthorizationSuccess);
    EXPECT_EQ(AuthorizationFree(ref, 0), errAuthorizationInvalidRef);
    EXPECT_EQ(run(), errAuthorizationInvalidRef);
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
}

}  // namespace
