#include "BApplication.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <memory>
#include <semaphore>

#include "AppDefs.h"
#include "BFilePanel.h"
#include "TestFolder.h"
#include "TestMain.h"
#include "TestWindow.h"

namespace {

class TestApp : public BApplication {
public:
    TestApp() : BApplication("application/x-vnd.test") {}

    void ReadyToRun() override {
        log += IsLaunching() ? "ready " : "late ";
        if (onReady) onReady();
    }
    void RefsReceived(BMessage*) override { log += "refs "; }
    void AboutRequested() override { log += "about "; }
    bool QuitRequested() override {
        log += "asked ";
        return BApplication::QuitRequested();
    }

    std::string log;
    std::function<void()> onReady;
};

class AgreeingWindow : public BWindow {
public:
    AgreeingWindow(bool agrees, std::string* log)
        : BWindow({10, 10, 109, 109}, "w", B_TITLED_WINDOW), agrees_(agrees), log_(log) {}

    bool QuitRequested() override {
        *log_ += agrees_ ? "yes " : "no ";
        return agrees_;
    }

private:
    const bool agrees_;
    std::string* const log_;
};

TEST(Application, StartsInOrderRunsAndQuits) {
    RunOnMainThread([] {
        TestApp app;
        EXPECT_EQ(be_app, &app);
        EXPECT_EQ(app.PostMessage(B_REFS_RECEIVED), B_OK);
        app.onReady = [&app] {
            EXPECT_FALSE(WindowServer::IsServerThread());
            EXPECT_TRUE(WindowServer::Ask([] { return true; }));
            EXPECT_EQ(app.PostMessage(B_ABOUT_REQUESTED), B_OK);
            EXPECT_EQ(app.PostMessage(B_QUIT_REQUESTED), B_OK);
        };
        EXPECT_EQ(app.Run(), B_OK);
        EXPECT_EQ(app.log, "refs ready about asked ");
    });
    EXPECT_EQ(be_app, nullptr);
}

TEST(Application, AsksTheWindowsOneByOneAndStaysIfOneRefuses) {
    RunOnMainThread([] {
        TestApp app;
        std::string windows;
        app.onReady = [&] {
            for (const bool agrees : {true, false, true})
                (new AgreeingWindow(agrees, &windows))->Show();
            EXPECT_EQ(BApplication::CountWindows(), 3);
            EXPECT_FALSE(app.BApplication::QuitRequested());
            // The one that had agreed is gone, the others are as they were.
            EXPECT_EQ(windows, "yes no ");
            EXPECT_EQ(BApplication::CountWindows(), 2);
            app.Quit();
        };
        EXPECT_EQ(app.Run(), B_OK);
        EXPECT_EQ(BApplication::CountWindows(), 0);
        EXPECT_EQ(windows, "yes no ");
    });
}

class FilePanelTest : public testing::Test {
protected:
    void SetUp() override {
        window_->Show();
        std::ofstream(folder_.Path() + "/one").put('1');
        std::ofstream(folder_.Path() + "/two").put('2');
        ASSERT_EQ(get_ref_for_path(folder_.Path().c_str(), &directory_), B_OK);
    }
    void TearDown() override { window_->LockAndQuit(); }

    static QFileDialog* Dialog() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* const dialog = qobject_cast<QFileDialog*>(widget);
                dialog != nullptr && dialog->isVisible())
                return dialog;
        return nullptr;
    }

    BMessenger Messenger() { return BMessenger(static_cast<BHandler*>(window_)); }

    const TestFolder folder_;
    TestWindow* window_ = new TestWindow;
    entry_ref directory_;
};

TEST_F(FilePanelTest, OpenPanelSendsTheFilesOrACancel) {
    BMessage message(B_REFS_RECEIVED);
    message.AddPointer("Simulation", this);
    BFilePanel panel(B_OPEN_PANEL, Messenger(), &directory_, true, &message);
    panel.SetFrame({50, 60, 549, 459});
    panel.Show();
    EXPECT_TRUE(panel.IsShowing());
    EXPECT_EQ(panel.Frame(), (BRect{50, 60, 549, 459}));
    WindowServer::Perform([&] {
        QFileDialog* const dialog = Dialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->directory().absolutePath().toStdString(), folder_.Path());
        auto* const name = dialog->findChild<QLineEdit*>();
        name->clear();
        QTest::keyClicks(name, "one");
        QTest::keyClick(name, Qt::Key_Return);
    });
    window_->Settle();
    EXPECT_FALSE(panel.IsShowing());
    auto received = window_->Take();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].what, B_REFS_RECEIVED);
    EXPECT_TRUE(received[0].HasName("Simulation"));
    entry_ref ref;
    EXPECT_EQ(received[0].FindRef("refs", &ref), B_OK);
    std::string path;
    EXPECT_EQ(get_path_for_ref(ref, &path), B_OK);
    EXPECT_EQ(path, folder_.Path() + "/one");

    panel.Show();
    WindowServer::Perform([] { Dialog()->reject(); });
    window_->Settle();
    received = window_->Take();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].what, B_CANCEL);
    int32 what = 0;
    void* source = nullptr;
    EXPECT_EQ(received[0].FindInt32("old_what", &what), B_OK);
    EXPECT_EQ(static_cast<uint32>(what), B_REFS_RECEIVED);
    EXPECT_EQ(received[0].FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, &panel);

    panel.Show();
    panel.Hide();
    EXPECT_FALSE(panel.IsShowing());
    window_->Settle();
    EXPECT_TRUE(window_->Take().empty());
    entry_ref where;
    EXPECT_EQ(panel.GetPanelDirectory(&where), B_OK);
    EXPECT_EQ(where, directory_);
}

TEST_F(FilePanelTest, SavePanelSendsFolderAndName) {
    BFilePanel panel(B_SAVE_PANEL, Messenger(), &directory_);
    panel.SetSaveText("proposed");
    panel.Show();
    WindowServer::Perform([] { static_cast<QDialog*>(Dialog())->done(QDialog::Accepted); });
    window_->Settle();
    const auto received = window_->Take();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].what, B_SAVE_REQUESTED);
    entry_ref ref;
    std::string name;
    EXPECT_EQ(received[0].FindRef("directory", &ref), B_OK);
    EXPECT_EQ(ref, directory_);
    EXPECT_EQ(received[0].FindString("name", &name), B_OK);
    EXPECT_EQ(name, "proposed");
}

TEST_F(FilePanelTest, APanelEndsWithItsQuestion) {
    auto panel = std::make_unique<BFilePanel>(B_SAVE_PANEL, Messenger(), &directory_);
    panel->SetSaveText("one");
    panel->Show();
    std::binary_semaphore isGone{0};
    std::binary_semaphore isAsked{0};
    WindowServer::Perform([&] {
        QFileDialog* const dialog = Dialog();
        QObject::connect(dialog, &QObject::destroyed, [&] { isGone.release(); });
        const auto post = [](auto action) {
            QMetaObject::invokeMethod(qApp, action, Qt::QueuedConnection);
        };
        post([dialog] { QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return); });
        // From within the dialog, which waits for the answer.
        post([&] { isAsked.release(); });
    });
    isAsked.acquire();
    ASSERT_TRUE(WindowServer::Ask([] {
        return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr;
    })) << "whether to write over the file";
    panel.reset();
    isGone.acquire();
    EXPECT_EQ(WindowServer::Ask([] { return QApplication::activeModalWidget(); }), nullptr);
    EXPECT_TRUE(window_->Take().empty());
}

}  // namespace
