// Messengers: what they name, waiting for room in a port, and answers.
#include "Platform/Application/BMessenger.h"

#include <gtest/gtest.h>

#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessageRunner.h"
#include "Tests/Platform/TestLooper.h"

namespace {

constexpr uint32 kAsk = FourCC("ask?");
constexpr uint32 kAnswer = FourCC("answ");
constexpr bigtime_t kShort = 20'000;

status_t StatusOf(const BHandler* handler, const BLooper* looper) {
    status_t status = B_ERROR;
    const bool isValid = BMessenger(handler, looper, &status).IsValid();
    EXPECT_EQ(isValid, status == B_OK);
    return status;
}

}  // namespace

TEST(BMessenger, NamesAHandlerOrALooper) {
    auto* const looper = new TestLooper;
    auto* const other = new TestLooper;
    BHandler handler;
    EXPECT_EQ(StatusOf(nullptr, nullptr), B_BAD_VALUE);
    EXPECT_EQ(StatusOf(&handler, nullptr), B_MISMATCHED_VALUES);
    looper->AddHandler(&handler);
    EXPECT_EQ(StatusOf(&handler, nullptr), B_OK);
    EXPECT_EQ(StatusOf(&handler, looper), B_OK);
    EXPECT_EQ(StatusOf(&handler, other), B_MISMATCHED_VALUES);
    EXPECT_EQ(StatusOf(nullptr, looper), B_OK);

    const BMessenger toHandler(&handler);
    EXPECT_TRUE(toHandler == BMessenger(&handler, looper));
    EXPECT_FALSE(toHandler == BMessenger(nullptr, looper));
    looper->RemoveHandler(&handler);
    EXPECT_TRUE(toHandler.IsValid()) << "its looper still lives";
    EXPECT_EQ(toHandler.SendMessage(kAsk), B_OK) << "and drops the message in silence";
    looper->Quit();
    EXPECT_FALSE(toHandler.IsValid());
    EXPECT_EQ(toHandler.SendMessage(kAsk), B_BAD_PORT_ID);
    EXPECT_EQ(StatusOf(nullptr, looper), B_BAD_VALUE);
    other->Quit();
}

TEST(BMessenger, TravelsInRecords) {
    auto* const looper = new TestLooper;
    const BMessenger target(looper);
    BMessage record, copy;
    EXPECT_EQ(record.AddMessenger("target", target), B_OK);
    std::vector<std::byte> stored;
    ASSERT_EQ(record.Flatten(&stored, BMessage::ByteOrder::kBigEndian), B_OK);
    ASSERT_EQ(copy.Unflatten(stored.data(), stored.size()), B_OK);
    BMessenger found;
    EXPECT_EQ(copy.FindMessenger("target", &found), B_OK);
    EXPECT_TRUE(found == target && found.IsValid());

    // The same numbers from another process name nobody here.
    const void* item = nullptr;
    std::size_t size = 0;
    ASSERT_EQ(copy.FindData("target", B_MESSENGER_TYPE, 0, &item, &size), B_OK);
    std::string foreign(static_cast<const char*>(item), size);
    ASSERT_EQ(size, 24u);
    foreign[8] ^= 1;
    ASSERT_EQ(copy.ReplaceData("target", B_MESSENGER_TYPE, 0, foreign.data(), size), B_OK);
    EXPECT_EQ(copy.FindMessenger("target", &found), B_OK);
    EXPECT_FALSE(found.IsValid());
    looper->Quit();
}

TEST(BMessenger, WaitsForRoomInThePort) {
    auto* const looper = new TestLooper(2);
    const auto log = looper->Log();
    const BMessenger target(looper);
    const BMessage message(kAsk);
    BMessage reply;
    EXPECT_EQ(target.SendMessage(&message, bigtime_t{0}), B_OK);
    EXPECT_EQ(target.SendMessage(&message), B_OK);
    EXPECT_EQ(target.SendMessage(&message, bigtime_t{0}), B_WOULD_BLOCK);
    EXPECT_EQ(target.SendMessage(&message, kShort), B_TIMED_OUT);
    EXPECT_EQ(target.SendMessage(&message, &reply, 0, B_INFINITE_TIMEOUT), B_WOULD_BLOCK);
    EXPECT_EQ(target.SendMessage(&message, &reply, kShort, B_INFINITE_TIMEOUT), B_TIMED_OUT);
    EXPECT_EQ(target.SendMessage(static_cast<const BMessage*>(nullptr)), B_BAD_VALUE);

    std::thread patient([&target] { EXPECT_EQ(target.SendMessage(kAnswer), B_OK); });
    looper->Run();
    patient.join();
    QuitFromHere(looper);
    EXPECT_EQ(log->Whats(), (std::vector<uint32>{kAsk, kAsk, kAnswer}));
}

TEST(BMessenger, BlockedSendersLearnOfTheEnd) {
    // Several rounds, because a sender may come too late to be blocked.
    for (int round = 0; round < 100; round++) {
        auto* const looper = new TestLooper(1);
        const BMessenger target(looper);
        EXPECT_EQ(target.SendMessage(kAsk), B_OK);
        std::binary_semaphore isAbout{0};
        std::thread sender([&] {
            isAbout.release();
            EXPECT_EQ(target.SendMessage(kAsk), B_BAD_PORT_ID);
        });
        isAbout.acquire();
        looper->Quit();
        sender.join();
    }
}

TEST(BMessenger, BringsEveryAskerItsAnswer) {
    auto* const looper = new TestLooper;
    looper->SetAction([looper](BMessage* message) {
        const bool isAwaited = message->what != kAsk;
        const BMessage answer(message->what + 1);
        EXPECT_EQ(looper->SendReply(answer), isAwaited ? B_OK : B_BAD_REPLY);
        EXPECT_EQ(looper->SendReply(answer), isAwaited ? B_DUPLICATE_REPLY : B_BAD_REPLY);
    });
    looper->Run();
    const BMessenger target(looper);
    std::vector<std::thread> askers;
    for (uint32 asker = 0; asker < 3; asker++) {
        askers.emplace_back([&target, asker] {
            for (uint32 i = 0; i < 100; i++) {
                const BMessage question(asker * 1000 + i);
                BMessage answer;
                ASSERT_EQ(target.SendMessage(&question, &answer), B_OK);
                EXPECT_EQ(answer.what, question.what + 1);
            }
        });
    }
    EXPECT_EQ(target.SendMessage(kAsk), B_OK) << "and awaits no answer";
    for (std::thread& asker : askers)
        asker.join();
    QuitFromHere(looper);
}

TEST(BMessenger, UnansweredMessageGivesNoReply) {
    const BMessage question(kAsk), quit(B_QUIT_REQUESTED);
    BMessage reply;
    auto* looper = new TestLooper;
    looper->Run();
    EXPECT_EQ(BMessenger(looper).SendMessage(&question, &reply), B_OK);
    EXPECT_EQ(reply.what, B_NO_REPLY) << "handled, not answered";
    EXPECT_EQ(BMessenger(looper).SendMessage(&quit, &reply), B_OK);
    EXPECT_EQ(reply.what, B_NO_REPLY) << "gone before it could";

    looper = new TestLooper;
    looper->SetQuitAnswer(false);
    looper->Run();
    bool result = true;
    EXPECT_EQ(BMessenger(looper).SendMessage(&quit, &reply), B_OK);
    EXPECT_EQ(reply.what, B_REPLY) << "it refuses to quit";
    EXPECT_EQ(reply.FindBool("result", &result), B_OK);
    EXPECT_FALSE(result);
    QuitFromHere(looper);
}

TEST(BMessenger, UnreadMessageGivesNoReplyWhenThePortCloses) {
    MessagePort port(1);
    const auto slot = std::make_shared<ReplySlot>();
    const BMessage question(kAsk);
    ASSERT_EQ(port.Put(std::make_unique<Delivery>(question, 1, slot), 0), B_OK);
    BMessage reply;
    EXPECT_TRUE(slot->IsAwaited());
    port.Close();
    EXPECT_EQ(slot->Wait(&reply, 0), B_OK);
    EXPECT_EQ(reply.what, B_NO_REPLY);
}

TEST(BMessenger, DetachedMessageIsAnsweredByAnyoneButNotTooLate) {
    auto* const looper = new TestLooper;
    std::unique_ptr<Delivery> detached;
    std::counting_semaphore<> isDetached{0};
    looper->SetAction([&](BMessage*) {
        detached = looper->DetachCurrentMessage();
        isDetached.release();
    });
    looper->Run();
    const BMessenger target(looper);
    const BMessage question(kAsk);
    BMessage reply;
    for (const bool isAnswered : {true, false}) {
        std::thread asker([&] { EXPECT_EQ(target.SendMessage(&question, &reply), B_OK); });
        isDetached.acquire();
        ASSERT_NE(detached, nullptr);
        EXPECT_EQ(detached->Message()->what, kAsk);
        EXPECT_TRUE(detached->IsSourceWaiting());
        if (isAnswered) detached->SendReply(BMessage(kAnswer));
        detached.reset();
        asker.join();
        EXPECT_EQ(reply.what, isAnswered ? kAnswer : B_NO_REPLY);
    }
    EXPECT_EQ(target.SendMessage(&question, &reply, B_INFINITE_TIMEOUT, kShort), B_TIMED_OUT);
    looper->Hold();
    EXPECT_EQ(target.SendMessage(&question, &reply, B_INFINITE_TIMEOUT, 0), B_WOULD_BLOCK);
    looper->ReleaseHold();
    QuitFromHere(looper);
    EXPECT_FALSE(detached->IsSourceWaiting());
    EXPECT_EQ(detached->SendReply(BMessage(kAnswer)), B_BAD_PORT_ID);
}

TEST(BMessageRunner, SendsUntilItEnds) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    looper->Run();
    {
        const BMessageRunner runner(BMessenger(looper), BMessage(kAsk), 1'000);
        log->AwaitCount(3);
    }
    looper->Hold();
    const std::size_t count = log->Whats().size();
    snooze(kShort);
    looper->ReleaseHold();
    QuitFromHere(looper);
    EXPECT_EQ(log->Whats().size(), count);
    // A target that is gone, and an end before the first turn.
    const BMessageRunner early(BMessenger(), BMessage(kAsk), 60'000'000);
}
