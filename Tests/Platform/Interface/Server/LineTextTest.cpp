// What any thread takes from a line, and what that does to the line.
#include "Platform/Interface/Server/LineText.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

struct LineTextTest : testing::Test {
    LineTextTest() {
        text.ExpectReplace();
        text.Replace("1", false);
    }
    // Types to the end, as somebody does who leaves the line.
    LineText::Finished Finish(const char* typed) {
        text.Typed(typed);
        return text.FinishTyping(false, false);
    }

    LineText text;
};

TEST_F(LineTextTest, AnAnswerDoesNotTouchWhatWasTakenAfterIt) {
    Finish("2");
    EXPECT_EQ(text.Take(), "2");
    Finish("three");
    EXPECT_EQ(text.Take(), "three");
    // Of the first one; the second is in somebody's hands and will be refused.
    EXPECT_FALSE(text.Accept("2", false));
    EXPECT_FALSE(text.Show("2.0", false, false));
    EXPECT_TRUE(text.Refuse("2"));
    EXPECT_EQ(text.Take(), std::nullopt);
    text.Insist();
    EXPECT_EQ(text.Take(), "three");
}

TEST_F(LineTextTest, NothingIsTakenOfALineThatIsGoneOrWillBeReplaced) {
    Finish("2");
    text.ExpectReplace();
    text.ExpectReplace();
    text.Replace("5", false);
    Finish("6");
    EXPECT_EQ(text.Take(), std::nullopt);
    text.Replace("7", false);
    EXPECT_EQ(Finish("7"), LineText::Finished::kToBeWritten);
    EXPECT_EQ(Finish("8"), LineText::Finished::kPending);
    text.LineIsGone();
    EXPECT_EQ(text.Take(), std::nullopt);
}

TEST_F(LineTextTest, OfManyTakersOneGetsTheTextAndNobodyARewrittenOne) {
    constexpr int kTexts = 2000;
    std::atomic<int> taken{0};
    std::atomic<bool> isDone{false};
    const auto take = [&] {
        while (!isDone)
            if (const auto typed = text.Take(); typed) {
                EXPECT_EQ(typed->front(), 't');
                taken++;
            }
    };
    std::thread one(take);
    std::thread other(take);
    for (int i = 0; i < kTexts; i++) {
        const int before = taken;
        Finish(("t" + std::to_string(i)).c_str());
        while (taken == before)
            std::this_thread::yield();
        text.Accept(std::to_string(i), i % 2 == 0);
        text.Show(std::to_string(i) + ".0", i % 2 == 0, false);
    }
    isDone = true;
    one.join();
    other.join();
    EXPECT_EQ(taken, kTexts);
}

}  // namespace
