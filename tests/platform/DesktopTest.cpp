#include "platform/Desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

class MockDesktop : public Desktop {
public:
    MOCK_METHOD(int, ShowAlert,
                (const std::string&, const std::string&, const std::vector<std::string>&),
                (override));
    MOCK_METHOD(std::string, AskOutputPath,
                (const std::string&, const std::string&, const std::string&), (override));
};

TEST(ShowErrorMsg, ReachesTheInstalledDesktopOnly) {
    MockDesktop first;
    MockDesktop second;
    EXPECT_CALL(first, ShowAlert).Times(0);
    EXPECT_CALL(second, ShowAlert("Error", "切れました\n%s", std::vector<std::string>{"OK"}));
    InstallDesktop(&first);
    InstallDesktop(&second);
    ShowErrorMsg("切れました\n%s");
    InstallDesktop(nullptr);
}

TEST(ShowErrorMsg, GoesToStandardErrorWithoutADesktop) {
    InstallDesktop(nullptr);
    testing::internal::CaptureStderr();
    ShowErrorMsg("100 %s");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100 %s\n");
}

} // namespace
