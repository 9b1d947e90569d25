// What programs ask each other, here all by threads of one.
#include "Platform/Interface/Server/LocalRequests.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QLocalSocket>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/RecordStream.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

constexpr uint32 kAsked = FourCC("askd");
constexpr bigtime_t kPatience = 300'000;

// Keeps the requests that come; answers nothing by itself.
class Target : public BLooper {
public:
    Target() { Run(); }

    void MessageReceived(BMessage* message) override {
        const std::lock_guard lock(mutex_);
        requests_.push_back(*message);
    }
    std::vector<BMessage> Requests() {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

private:
    std::mutex mutex_;
    std::vector<BMessage> requests_;
};

class LocalRequestsTest : public testing::Test {
protected:
    LocalRequestsTest() {
        WindowServer::Perform([this] {
            server_ = std::make_unique<LocalRequests>(
                path_, BMessenger(static_cast<BHandler*>(target_)), kAsked);
        });
    }
    ~LocalRequestsTest() override {
        StopServer();
        if (target_->Lock()) target_->Quit();
    }
    void StopServer() {
        WindowServer::Perform([this] { server_.reset(); });
    }
    // What it says, or that nobody deals with it.
    std::future<std::string> Ask(const std::string& word) const {
        return std::async(std::launch::async, [this, word]() -> std::string {
            BMessage request;
            request.AddString("word", word);
            BMessage answer;
            if (!LocalRequests::Ask(path_, request, kPatience, &answer)) return "nobody";
            std::string said;
            answer.FindString("word", &said);
            return said;
        });
    }
    // Of the request that came as that one.
    int32 Number(std::size_t index) const {
        EXPECT_TRUE(WaitUntil([&] { return target_->Requests().size() > index; }));
        int32 number = 0;
        EXPECT_EQ(target_->Requests()[index].FindInt32(LocalRequests::kNumber, &number), B_OK);
        return number;
    }
    static void Answer(int32 number, const std::string& word) {
        BMessage answer;
        answer.AddString("word", word);
        LocalRequests::Answer(number, answer);
    }

    const TestFolder folder_;
    const std::string path_ = folder_.Path("socket");
    Target* const target_ = new Target;
    std::unique_ptr<LocalRequests> server_;
};

TEST_F(LocalRequestsTest, WhoeverAskedGetsHisOwnAnswerHoweverLate) {
    struct stat info {};
    ASSERT_EQ(stat(path_.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0077, 0u) << "nobody else's business";
    auto first = Ask("one");
    const int32 one = Number(0);
    auto second = Ask("two");
    const int32 two = Number(1);
    EXPECT_EQ(target_->Requests()[1].what, kAsked);
    snooze(2 * kPatience);
    Answer(two, "second");
    Answer(one, "first");
    Answer(one, "again");
    Answer(77, "nobody");
    EXPECT_EQ(first.get(), "first");
    EXPECT_EQ(second.get(), "second");
}

TEST_F(LocalRequestsTest, AProgramThatEndsLeavesTheRequestToTheAsker) {
    auto asked = Ask("one");
    Number(0);
    StopServer();
    EXPECT_EQ(asked.get(), "nobody");
    EXPECT_EQ(Ask("two").get(), "nobody");
    EXPECT_EQ(target_->Requests().size(), 1u);
}

// Such as was waited for no longer: the asker has done it himself.
TEST_F(LocalRequestsTest, ARequestWhoseAskerHasGoneIsNotDelivered) {
    {
        QLocalSocket socket;
        socket.connectToServer(QString::fromStdString(path_));
        ASSERT_TRUE(socket.waitForConnected());
        socket.write(RecordStream::Frame(BMessage(FourCC("more"))));
        ASSERT_TRUE(socket.waitForReadyRead()) << "it is offered";
    }
    // What is no record ends the connection.
    for (const QByteArray& garbage : {QByteArray("\x04\0\0\0abcd", 8), QByteArray(64, '\xff')}) {
        QLocalSocket socket;
        socket.connectToServer(QString::fromStdString(path_));
        ASSERT_TRUE(socket.waitForConnected());
        socket.write(garbage);
        EXPECT_TRUE(socket.waitForDisconnected());
    }
    auto asked = Ask("one");
    const int32 number = Number(0);
    EXPECT_EQ(target_->Requests().size(), 1u);
    Answer(number, "first");
    EXPECT_EQ(asked.get(), "first");
}

// It had no time to say anything.
TEST_F(LocalRequestsTest, AProgramThatHangsIsNotWaitedForAndGetsNothingLater) {
    std::future<std::string> asked;
    WindowServer::Perform([&] {
        asked = Ask("one");
        EXPECT_EQ(asked.get(), "nobody");
    });
    auto next = Ask("two");
    const int32 number = Number(0);
    std::string word;
    EXPECT_EQ(target_->Requests()[0].FindString("word", &word), B_OK);
    EXPECT_EQ(word, "two");
    Answer(number, "second");
    EXPECT_EQ(next.get(), "second");
}

}  // namespace
