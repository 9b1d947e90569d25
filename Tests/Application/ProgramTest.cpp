// The program as its own process: one that runs for all, its end by a signal, and what it says when
// there is no display. It needs none here.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "AppDriver.h"
#include "ChildProcess.h"
#include "RecoveryFolder.h"
#include "RememberedSettings.h"
#include "SimulationFile.h"
#include "TestFolder.h"

namespace {

constexpr std::chrono::seconds kPatience{30};

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
    std::string Document(const std::string& name) const {
        std::string path = folder_.Path() + '/' + name;
        EXPECT_FALSE(SimulationFile::Write(path, TestResources().NewSimulation()).Failed());
        return path;
    }
    // The documents that a program which has ended had noted, the latest first.
    [[nodiscard]] std::vector<std::string> Recent() const {
        setenv("XDG_CONFIG_HOME", (folder_.Path() + "/settings").c_str(), 1);
        RememberedSettings settings;
        DefaultResponses responses;
        EXPECT_EQ(settings.Load(&responses), B_OK);
        return settings.recentDocuments;
    }
    static void ExpectsEnd(ChildProcess* program, int status) {
        const auto ending = program->Wait(kPatience);
        ASSERT_TRUE(ending.has_value());
        EXPECT_EQ(ending->status, status) << "signal " << ending->signal;
    }

    const TestFolder folder_;
    ChildProcess::Environment environment_;
};

TEST_F(ProgramTest, ASecondStartHandsItsDocumentsOver) {
    const std::string document = Document("handed over");
    const auto first = Start({});
    ASSERT_TRUE(WaitForSocket());
    const auto second = Start({document});
    ExpectsEnd(second.get(), 0);
    const auto missing = Start({folder_.Path() + "/missing"});
    ExpectsEnd(missing.get(), 1);
    EXPECT_NE(Said().find("/missing: "), std::string::npos);
    const auto activation = Start({});
    ExpectsEnd(activation.get(), 0);
    const auto own = Start({"--new-instance"});
    EXPECT_FALSE(own->Wait(std::chrono::seconds(1)).has_value());
    own->Signal(SIGTERM);
    ExpectsEnd(own.get(), 0);
    EXPECT_TRUE(first->IsRunning());
    first->Signal(SIGTERM);
    ExpectsEnd(first.get(), 0);
    EXPECT_EQ(Recent(), std::vector<std::string>{document});
}

TEST_F(ProgramTest, WhatAKilledProgramLeavesIsNotInTheWay) {
    {
        const auto killed = Start({});
        ASSERT_TRUE(WaitForSocket());
        killed->Signal(SIGKILL);
        static_cast<void>(killed->Wait(kPatience));
    }
    ASSERT_TRUE(WaitForSocket());
    const auto next = Start({});
    EXPECT_FALSE(next->Wait(std::chrono::seconds(1)).has_value());
    const auto second = Start({});
    ExpectsEnd(second.get(), 0);
    next->Signal(SIGHUP);
    ExpectsEnd(next.get(), 0);
}

TEST_F(ProgramTest, WithoutADisplayItSaysSo) {
    environment_["QT_QPA_PLATFORM"] = "xcb";
    const auto program = Start({});
    ExpectsEnd(program.get(), 1);
    EXPECT_NE(Said().find("orvek-run"), std::string::npos) << Said();
    EXPECT_EQ(Said().find('\n'), Said().size() - 1) << Said();
    const auto help = Start({"--help"});
    ExpectsEnd(help.get(), 0);
    environment_["QT_QPA_PLATFORM"] = "offscreen";
    const auto wrong = Start({"--wrong"});
    ExpectsEnd(wrong.get(), 2);
}

}  // namespace
