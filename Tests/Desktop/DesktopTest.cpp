#include "Tests/Desktop/DesktopTest.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Simulation/Document/SimulationFile.h"

namespace fs = std::filesystem;

namespace {

std::string NameOf(const std::string& path) {
    return fs::path(path).filename().string();
}

}  // namespace

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

// --- The program and its windows ---

std::string DesktopTest::CopyExample(const std::string& name) const {
    const fs::path copy = desktop_->Folder() / (name + ".orvek");
    fs::copy_file(fs::path(ORVEK_EXAMPLES) / (name + ".orvek"), copy);
    return copy.string();
}

void DesktopTest::StartProgram(const std::vector<std::string>& arguments) {
    at_.clear();  // windows of another program may have the same numbers
    std::vector<std::string> command{ORVEK_PROGRAM, "--no-gallery"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    program_ = desktop_->Start(command);
}

bool DesktopTest::EndsWell() {
    return program_->Wait(DesktopSession::kPatience) == ChildProcess::Ending{0, 0};
}

DesktopTest::Window DesktopTest::OpenExample(const std::string& example) {
    path_ = CopyExample(example);
    StartProgram({path_});
    Window window = WaitForSimulation(path_);
    EXPECT_FALSE(window.empty()) << desktop_->Output();
    return window;
}

DesktopTest::Window DesktopTest::WaitForSimulation(const std::string& path) const {
    return desktop_->WaitForWindow('^' + NameOf(path) + "[*]?$");
}

bool DesktopTest::Comes(const std::string& title) const {
    return !desktop_->WaitForWindow(title).empty();
}

bool DesktopTest::Says(const std::string& text) const {
    return DesktopSession::WaitFor(
        [&] { return desktop_->Output().find(text) != std::string::npos; });
}

void DesktopTest::GoTo(const Window& window, Field field) {
    int& at = at_[window];
    desktop_->Activate(window);
    desktop_->Press("Tab", (field - at + kFields) % kFields);
    at = field;
}

void DesktopTest::Enter(const Window& window, Field field, const std::string& text) {
    GoTo(window, field);
    desktop_->Press("ctrl+a");
    desktop_->Type(text);
    desktop_->Press("Return");
}

void DesktopTest::RunAWhile(const Window& window, const std::function<void()>& meanwhile) const {
    constexpr int kLooks = 4;  // the first of them may be of the button alone
    desktop_->Press(window, "ctrl+g");
    QImage last = desktop_->Picture(window);
    for (int i = 0; i < kLooks; i++)
        EXPECT_TRUE(desktop_->WaitForPicture(window, [&](const QImage& picture) {
            return std::exchange(last, picture) != picture;
        }));
    meanwhile();
    desktop_->Press(window, "ctrl+g");
}

// --- Saving and closing ---

bool DesktopTest::IsMarked(const Window& window, bool isEdited) const {
    return DesktopSession::WaitFor(
        [&] { return desktop_->Title(window).ends_with('*') == isEdited; });
}

void DesktopTest::Save(const Window& window) const {
    const auto before = fs::last_write_time(path_);
    desktop_->Press(window, "ctrl+s");
    ASSERT_TRUE(DesktopSession::WaitFor([&] { return fs::last_write_time(path_) != before; }));
    EXPECT_TRUE(IsMarked(window, false));
}

void DesktopTest::GiveAnswer(Answer answer, bool forGood) const {
    const std::string title = "^Orvek \\(" + NameOf(path_) + "\\): Message$";
    const Window box = desktop_->WaitForWindow(title);
    ASSERT_FALSE(box.empty());
    desktop_->Activate(box);
    // "Save" has the keyboard; after it come the check box, "Don't Save" and "Cancel".
    if (forGood)
        for (const char* const key : {"Tab", "space", "shift+Tab"})
            desktop_->Press(key);
    const bool isCancel = answer == Answer::kCancel;
    if (isCancel || answer == Answer::kDontSave) desktop_->Press("Tab", isCancel ? 3 : 2);
    desktop_->Press(answer == Answer::kEscape ? "Escape" : "Return");
    ASSERT_TRUE(desktop_->WaitForNoWindow(title));
}

// --- Documents ---

BMessage DesktopTest::Record(const std::string& path) {
    BMessage record;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed()) << path;
    return record;
}

std::unique_ptr<SimulationDocument> DesktopTest::Read(const std::string& path) {
    auto document = std::make_unique<SimulationDocument>(nullptr);
    EXPECT_FALSE(document->Load(Record(path)).Failed()) << path;
    return document;
}

const Body* DesktopTest::BodyNamed(SimulationDocument* document, const std::string& name) {
    for (const Body* body : document->Portal()->BodiesInMassOrder())
        if (body->Name() == name) return body;
    ADD_FAILURE() << "no body " << name;
    return nullptr;
}

std::string DesktopTest::Bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<RecoveryCopy> DesktopTest::Copies() const {
    return RecoveryFolder((desktop_->Folder() / "state/orvek/recovery").string()).List();
}
