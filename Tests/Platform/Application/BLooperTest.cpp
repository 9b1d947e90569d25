// Loopers: the order of messages, the bounded port, and handlers.
#include "Platform/Application/BLooper.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <vector>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Tests/Platform/InThreads.h"
#include "Tests/Platform/TestLooper.h"

namespace {

constexpr uint32 kWork = FourCC("work");

class LoggingHandler : public BHandler {
public:
    void MessageReceived(BMessage* message) override {
        log.Add(message->what);
        if (passesOn) BHandler::MessageReceived(message);
    }
    LooperLog log;
    bool passesOn = false;
};

}  // namespace

// --- Messages ---

TEST(BLooper, KeepsTheOrderOfEverySender) {
    constexpr int kSenders = 4;
    constexpr uint32 kMessages = 500;
    auto* const looper = new TestLooper(8);
    const auto log = looper->Log();
    const BMessenger target(looper);
    looper->Run();
    InThreads(kSenders, [&target](int sender) {
        for (uint32 i = 0; i < kMessages; i++)
            EXPECT_EQ(target.SendMessage(static_cast<uint32>(sender) << 16 | i), B_OK);
    });
    QuitFromHere(looper);
    std::map<uint32, uint32> next;
    for (const uint32 what : log->Whats())
        EXPECT_EQ(what & 0xFFFF, next[what >> 16]++);
    EXPECT_EQ(log->Whats().size(), kSenders * kMessages);
}

TEST(BLooper, FullPortRefusesMessages) {
    for (const int32 capacity : {0, 7}) {
        const int32 room = capacity > 0 ? capacity : BLooper::kDefaultPortCapacity;
        auto* const looper = new TestLooper(capacity);
        const auto log = looper->Log();
        for (int32 i = 0; i < room; i++)
            EXPECT_EQ(looper->PostMessage(kWork), B_OK);
        EXPECT_EQ(looper->PostMessage(kWork), B_WOULD_BLOCK);

        looper->Run();
        log->AwaitCount(static_cast<std::size_t>(room));
        // The port is emptied between messages, so it fills up while one is being handled.
        looper->Hold();
        for (int32 i = 0; i < room; i++)
            EXPECT_EQ(looper->PostMessage(kWork), B_OK);
        EXPECT_EQ(looper->PostMessage(kWork), B_WOULD_BLOCK);
        looper->ReleaseHold();
        QuitFromHere(looper);  // needs no room in the port
        EXPECT_EQ(log->Whats().size(), static_cast<std::size_t>(2 * room));
    }
}

// --- Handlers ---

TEST(BLooper, DeliversToTheHandlerAddressed) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    LoggingHandler first;
    LoggingHandler second;
    EXPECT_EQ(looper->PostMessage(kWork, &first), B_MISMATCHED_VALUES);
    looper->AddHandler(&first);
    looper->AddHandler(&first);
    looper->AddHandler(&second);
    EXPECT_EQ(looper->CountHandlers(), 3);
    second.passesOn = true;

    EXPECT_EQ(looper->PostMessage(1, &first), B_OK);
    EXPECT_EQ(looper->PostMessage(2, &second), B_OK);                // passed on to the looper
    EXPECT_EQ(looper->PostMessage(3, nullptr), B_OK);                // no handler is preferred yet
    EXPECT_EQ(looper->PostMessage(B_QUIT_REQUESTED, &first), B_OK);  // not the looper's own
    EXPECT_TRUE(log->Whats().empty()) << "nothing is handled before Run";
    looper->Run();
    log->AwaitCount(2);
    first.log.AwaitCount(2);
    ASSERT_TRUE(looper->Lock());
    looper->SetPreferredHandler(&first);
    looper->Unlock();
    EXPECT_EQ(looper->PostMessage(4, nullptr), B_OK);
    QuitFromHere(looper);

    EXPECT_EQ(log->Whats(), (std::vector<uint32>{2, 3}));
    EXPECT_EQ(first.log.Whats(), (std::vector<uint32>{1, B_QUIT_REQUESTED, 4}));
    EXPECT_EQ(second.log.Whats(), std::vector<uint32>{2});
    EXPECT_EQ(first.Looper(), nullptr) << "the looper lets its handlers go";
}

TEST(BLooper, DropsMessagesForHandlersThatLeft) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    LoggingHandler removed;
    LoggingHandler front;
    auto deleted = std::make_unique<LoggingHandler>();
    looper->AddHandler(&removed);
    looper->AddHandler(&front);
    looper->AddHandler(deleted.get());
    front.SetNextHandler(&removed);
    looper->SetPreferredHandler(&removed);

    EXPECT_EQ(looper->PostMessage(1, &removed), B_OK);
    EXPECT_EQ(looper->PostMessage(2, deleted.get()), B_OK);
    EXPECT_EQ(looper->PostMessage(3, nullptr), B_OK);
    EXPECT_TRUE(looper->RemoveHandler(&removed));
    EXPECT_FALSE(looper->RemoveHandler(&removed));
    looper->SetPreferredHandler(&removed);  // which is no handler of this looper
    deleted.reset();
    EXPECT_EQ(looper->CountHandlers(), 2);
    looper->Run();
    QuitFromHere(looper);
    EXPECT_EQ(log->Whats(), std::vector<uint32>{3});
    EXPECT_TRUE(removed.log.Whats().empty());
}

TEST(BLooper, HandlersComeAndGoWhileItRuns) {
    auto* const looper = new TestLooper;
    looper->Run();
    InThreads(3, [looper](int) {
        for (int round = 0; round < 200; round++) {
            LoggingHandler handler;
            ASSERT_TRUE(looper->Lock());
            looper->AddHandler(&handler);
            looper->Unlock();
            if (looper->PostMessage(kWork, &handler) != B_OK) continue;
            if (round % 2 == 0) handler.log.AwaitCount(1);
            // The destructor must not overlap with a call of MessageReceived.
            ASSERT_TRUE(handler.LockLooper());
            looper->RemoveHandler(&handler);
            looper->Unlock();
        }
    });
    QuitFromHere(looper);
}
