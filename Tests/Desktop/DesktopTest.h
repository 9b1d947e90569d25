// For tests that use the real program as a user does: a desktop, the program on it. Skips where
// what a desktop needs is not installed.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DesktopSession.h"

class DesktopTest : public testing::Test {
protected:
    using Window = DesktopSession::Window;

    void SetUp() override;
    // Leaves what the program said and the screen's last picture, where a test has failed.
    void TearDown() override;

    // A copy of an example ("planets") in the desktop's folder; its path.
    [[nodiscard]] std::string CopyExample(const std::string& name) const;
    // Starts the program with these arguments.
    void StartProgram(const std::vector<std::string>& arguments);
    // True if the program ends by itself, and well.
    [[nodiscard]] bool EndsWell();

    // Without a value where the test is skipped.
    std::optional<DesktopSession> desktop_;
    std::unique_ptr<ChildProcess> program_;
};
