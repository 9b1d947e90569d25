#include "BApplication.h"

#include <gtest/gtest.h>

#include "TestMain.h"
#include "TestWindow.h"

namespace {

class TestApp : public BApplication {
public:
    TestApp() : BApplication("application/x-vnd.test") {}

    void ReadyToRun() override {
        (new BWindow({10, 10, 109, 109}, "agrees", B_TITLED_WINDOW))->Show();
        auto* const refuses = new TestWindow;
        auto* const last = new TestWindow;
        refuses->Show();
        last->Show();
        EXPECT_FALSE(QuitRequested());
        EXPECT_EQ(CountWindows(), 2) << "the one that agreed is gone";
        EXPECT_EQ(refuses->quitRequests, 1);
        EXPECT_EQ(last->quitRequests, 0);
        Quit();
    }
};

}  // namespace

TEST(Application, StaysIfAWindowRefusesAndTakesAllWithItWhenItQuits) {
    RunOnMainThread([] {
        TestApp app;
        EXPECT_EQ(app.Run(), B_OK);
        EXPECT_EQ(BApplication::CountWindows(), 0);
    });
    EXPECT_EQ(be_app, nullptr);
}
