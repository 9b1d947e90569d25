#include "DesktopTest.h"

#include <algorithm>
#include <iostream>

namespace fs = std::filesystem;

void DesktopTest::SetUp() {
    if (const std::string missing = DesktopSession::MissingProgram(); !missing.empty())
        GTEST_SKIP() << missing << " is not installed (Tools/packages.txt)";
    desktop_.emplace();
    ASSERT_TRUE(desktop_->IsReady()) << "there is no screen or no window manager";
}

void DesktopTest::TearDown() {
    if (!HasFailure() || !desktop_) return;
    std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    std::replace(name.begin(), name.end(), '/', '-');
    const fs::path picture = fs::current_path() / ("desktop-" + name + ".png");
    desktop_->Screen().save(QString::fromStdString(picture.string()));
    std::cerr << "The screen at the end: " << picture << "\nThe program's output:\n"
              << desktop_->Output();
}

std::string DesktopTest::CopyExample(const std::string& name) const {
    const fs::path copy = desktop_->Folder() / (name + ".orvek");
    fs::copy_file(fs::path(ORVEK_EXAMPLES) / (name + ".orvek"), copy);
    return copy.string();
}

void DesktopTest::StartProgram(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{ORVEK_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    program_ = desktop_->Start(command);
}

bool DesktopTest::EndsWell() {
    return program_->Wait(DesktopSession::kPatience) == ChildProcess::Ending{0, 0};
}
