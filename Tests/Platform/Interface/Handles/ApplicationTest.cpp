#include "Platform/Interface/Handles/BApplication.h"

#include <gtest/gtest.h>

#include "Tests/Platform/Interface/TestMain.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

class TestApp : public BApplication {
public:
    TestApp() : BApplication("application/x-vnd.test") {}

    void ReadyToRun() override {
        (new TestWindow)->Show();
        (new TestWindow)->Show();
        EXPECT_EQ(CountWindows(), 2);
        Quit();
    }
};

}  // namespace

TEST(Application, TakesItsWindowsWithItWhenItQuits) {
    RunOnMainThread([] {
        TestApp app;
        EXPECT_EQ(app.Run(), B_OK);
        EXPECT_EQ(BApplication::CountWindows(), 0);
    });
    EXPECT_EQ(be_app, nullptr);
}
