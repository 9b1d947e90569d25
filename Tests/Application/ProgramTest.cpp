// The program as its own process: one that runs for all, its end by a signal, and what it says when
// there is no display. It needs none here.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Application/RememberedSettings.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Platform/ChildProcess.h"
#include "Tests/Platform/TestFolder.h"

namespace {

class ProgramTest : public testing::Test {
protected:
    void SetUp() override {
        const std::string& path = folder_.Path();
        environment_ = {
            {"QT_QPA_PLATFORM", "offscreen"},    {"XDG_CONFIG_HOME", path + "/settings"},
            {"XDG_STATE_HOME", path + "/state"}, {"XDG_RUNTIME_DIR", path + "/run"},
            {"WAYLAND_DISPLAY", std::nullopt},   {"DISPLAY", std::nullopt}};
        std::filesystem::create_directory(path + "/run");
        std::filesystem::permissions(path + "/run", std::filesystem::perms::owner_all);
    }

    std::unique_ptr<ChildProcess> Start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), ORVEK_PROGRAM);
        return std::make_unique<ChildProcess>(arguments, environment_, Output());
    }
    [[nodiscard]] std::string Output() const { return folder_.Path() + "/output"; }
    [[nodiscard]] std::string Said() const {
        std::ostringstream text;
        text << std::ifstream(Output()).rdbuf();
        return text.str();
    }
    [[nodiscard]] bool WaitForSocket() const {
        return AppDriver::WaitUntil(
            [&] { return std::filesystem::exists(folder_.Path() + "/run/orvek-.socket"); });
    }
    [[nodiscard]] std::vector<std::string> RecentDocumentsOnDisk() const {
        setenv("XDG_CONFIG_HOME", (folder_.Path() + "/settings").c_str(), 1);
        RememberedSettings settings;
        DefaultResponses responses;
        EXPECT_EQ(settings.Load(&responses), B_OK);
        return settings.recentDocuments;
    }
    static bool Stays(ChildProcess* program) {
        return !program->Wait(std::chrono::seconds(1)).has_value();
    }
    static void ExpectsEnd(ChildProcess* program, int status) {
        constexpr std::chrono::seconds kPatience{30};
        EXPECT_EQ(program->Wait(kPatience), (ChildProcess::Ending{status, 0}));
    }

    const TestFolder folder_;
    ChildProcess::Environment environment_;
};

TEST_F(ProgramTest, ASecondStartHandsItsDocumentsOverUnlessToldOtherwise) {
    const std::string document = WriteDocument(folder_.Path() + "/handed over");
    const auto first = Start({});
    ASSERT_TRUE(WaitForSocket());
    ExpectsEnd(Start({document}).get(), 0);
    ExpectsEnd(Start({folder_.Path() + "/missing"}).get(), 1);
    EXPECT_NE(Said().find("/missing cannot be opened: "), std::string::npos);
    // What the first one finds out is told where it was asked for.
    const std::string bad = folder_.Path() + "/bad";
    PutUnchecked(bad, BadRecord());
    ExpectsEnd(Start({bad}).get(), 1);
    EXPECT_NE(Said().find(bad + " cannot be opened: "), std::string::npos) << Said();
    ExpectsEnd(Start({"--wrong"}).get(), 2);
    const auto own = Start({"--new-instance"});
    EXPECT_TRUE(Stays(own.get()));
    own->Signal(SIGTERM);
    ExpectsEnd(own.get(), 0);
    EXPECT_TRUE(first->IsRunning());
    first->Signal(SIGTERM);
    ExpectsEnd(first.get(), 0);
    // It was opened in the first one.
    EXPECT_EQ(RecentDocumentsOnDisk(), std::vector{document});
}

TEST_F(ProgramTest, WhatAKilledProgramLeavesIsNotInTheWay) {
    {
        const auto killed = Start({});
        ASSERT_TRUE(WaitForSocket());
        killed->Signal(SIGKILL);
        static_cast<void>(killed->Wait(std::chrono::seconds(30)));
    }
    ASSERT_TRUE(WaitForSocket());
    const auto next = Start({});
    EXPECT_TRUE(Stays(next.get()));
    ExpectsEnd(Start({}).get(), 0);
    next->Signal(SIGHUP);
    ExpectsEnd(next.get(), 0);
}

// A document is opened by the one or the other, never by both.
TEST_F(ProgramTest, WhoIsSlowIsNotWaitedForAndOpensNothingLater) {
    const std::string document = WriteDocument(folder_.Path() + "/waiting");
    const auto first = Start({});
    ASSERT_TRUE(WaitForSocket());
    first->Signal(SIGSTOP);
    const auto second = Start({document});
    EXPECT_FALSE(second->Wait(std::chrono::seconds(8)).has_value());
    first->Signal(SIGCONT);
    EXPECT_TRUE(Stays(first.get()));
    first->Signal(SIGTERM);
    ExpectsEnd(first.get(), 0);
    EXPECT_TRUE(RecentDocumentsOnDisk().empty());
    second->Signal(SIGTERM);
    ExpectsEnd(second.get(), 0);
    EXPECT_EQ(RecentDocumentsOnDisk(), std::vector{document});
}

// The user who waits for the other one can give up.
TEST_F(ProgramTest, WaitingForTheFirstOneEndsByASignalOrWithIt) {
    const std::string document = WriteDocument(folder_.Path() + "/waiting");
    auto first = Start({});
    ASSERT_TRUE(WaitForSocket());
    first->Signal(SIGSTOP);
    const auto second = Start({document});
    EXPECT_TRUE(Stays(second.get()));
    second->Signal(SIGINT);
    EXPECT_EQ(second->Wait(std::chrono::seconds(2)), (ChildProcess::Ending{-1, SIGINT}));
    const auto third = Start({document});
    EXPECT_TRUE(Stays(third.get()));
    first->Signal(SIGKILL);
    first.reset();
    EXPECT_TRUE(Stays(third.get()));
    // It has taken the other's place.
    ExpectsEnd(Start({document}).get(), 0);
    third->Signal(SIGTERM);
    ExpectsEnd(third.get(), 0);
}

TEST_F(ProgramTest, WithoutADisplayItTellsWhatItCanAndEnds) {
    environment_["QT_QPA_PLATFORM"] = "xcb";
    ExpectsEnd(Start({}).get(), 1);
    // One line, and where to go instead.
    EXPECT_NE(Said().find("orvek-run"), std::string::npos) << Said();
    EXPECT_EQ(Said().find('\n'), Said().size() - 1) << Said();
    ExpectsEnd(Start({"--help"}).get(), 0);
}

}  // namespace
