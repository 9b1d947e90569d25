#include "Platform/Interface/Handles/BFilePanel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <memory>
#include <semaphore>

#include "Platform/Application/AppDefs.h"
#include "Tests/Platform/Interface/TestWindow.h"
#include "Tests/Platform/TestFolder.h"

namespace {

class FilePanelTest : public WindowFixture {
protected:
    void SetUp() override {
        window_->Show();
        folder_.Write("one", "1");
        ASSERT_EQ(get_ref_for_path(folder_.Path().c_str(), &directory_), B_OK);
    }

    static QFileDialog* Dialog() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* const dialog = qobject_cast<QFileDialog*>(widget);
                dialog != nullptr && dialog->isVisible())
                return dialog;
        return nullptr;
    }

    BMessenger Messenger() { return BMessenger(static_cast<BHandler*>(window_)); }

    const TestFolder folder_;
    entry_ref directory_;
};

TEST_F(FilePanelTest, AnOpenPanelSendsTheFilesOrACancel) {
    BMessage message(B_REFS_RECEIVED);
    message.AddPointer("Simulation", this);
    BFilePanel panel(B_OPEN_PANEL, Messenger(), &directory_, true, &message);
    panel.Show();
    window_->ByHand([&] {
        QFileDialog* const dialog = Dialog();
        ASSERT_NE(dialog, nullptr);
        auto* const name = dialog->findChild<QLineEdit*>();
        name->clear();
        QTest::keyClicks(name, "one");
        QTest::keyClick(name, Qt::Key_Return);
    });
    EXPECT_FALSE(panel.IsShowing());
    const BMessage opened = window_->TakeOne();
    EXPECT_EQ(opened.what, B_REFS_RECEIVED);
    EXPECT_TRUE(opened.HasName("Simulation"));
    entry_ref ref;
    EXPECT_EQ(opened.FindRef("refs", &ref), B_OK);
    std::string path;
    EXPECT_EQ(get_path_for_ref(ref, &path), B_OK);
    EXPECT_EQ(path, folder_.Path("one"));

    panel.Show();
    window_->ByHand([] {
        QTest::keyClicks(Dialog()->findChild<QLineEdit*>(), "on");
        Dialog()->reject();
    });
    const BMessage cancelled = window_->TakeOne();
    EXPECT_EQ(cancelled.what, B_CANCEL);
    int32 what = 0;
    void* source = nullptr;
    EXPECT_EQ(cancelled.FindInt32("old_what", &what), B_OK);
    EXPECT_EQ(static_cast<uint32>(what), B_REFS_RECEIVED);
    EXPECT_EQ(cancelled.FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, &panel);

    panel.Show();
    // What was half typed is not there any more.
    EXPECT_EQ(WindowServer::Ask([] { return Dialog()->findChild<QLineEdit*>()->text(); }), "");
    panel.Hide();
    window_->Settle();
    EXPECT_TRUE(window_->Take().empty());
}

TEST_F(FilePanelTest, ASavePanelSendsFolderAndName) {
    BFilePanel panel(B_SAVE_PANEL, Messenger(), &directory_);
    panel.SetSaveText("proposed");
    panel.Show();
    window_->ByHand([] { static_cast<QDialog*>(Dialog())->done(QDialog::Accepted); });
    const BMessage received = window_->TakeOne();
    EXPECT_EQ(received.what, B_SAVE_REQUESTED);
    entry_ref ref;
    std::string name;
    EXPECT_EQ(received.FindRef("directory", &ref), B_OK);
    EXPECT_EQ(ref, directory_);
    EXPECT_EQ(received.FindString("name", &name), B_OK);
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
