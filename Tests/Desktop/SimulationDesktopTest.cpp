#include "SimulationDesktopTest.h"

#include <fstream>
#include <iterator>

#include "SimulationFile.h"

namespace fs = std::filesystem;

namespace {

std::string NameOf(const std::string& path) {
    return fs::path(path).filename().string();
}

// Of the window that asks whether to save that document.
std::string QuestionAbout(const std::string& path) {
    return "^Orvek \\(" + NameOf(path) + "\\): Message$";
}

}  // namespace

// --- Windows ---

void SimulationDesktopTest::StartProgram(const std::vector<std::string>& arguments) {
    at_.clear();  // windows of another program may have the same numbers
    DesktopTest::StartProgram(arguments);
}

DesktopTest::Window SimulationDesktopTest::OpenExample(const std::string& example) {
    const std::string path = CopyExample(example);
    StartProgram({path});
    const Window window = WaitForSimulation(path);
    EXPECT_FALSE(window.empty()) << desktop_->Output();
    return window;
}

DesktopTest::Window SimulationDesktopTest::WaitForSimulation(const std::string& path) const {
    return desktop_->WaitForWindow('^' + NameOf(path) + "[*]?$");
}

void SimulationDesktopTest::GoTo(const Window& window, Field field) {
    int& at = at_[window];
    desktop_->Activate(window);
    desktop_->Press("Tab", (field - at + kFields) % kFields);
    at = field;
}

void SimulationDesktopTest::Enter(const Window& window, Field field, const std::string& text) {
    GoTo(window, field);
    desktop_->Press("ctrl+a");
    desktop_->Type(text);
    desktop_->Press("Return");
}

void SimulationDesktopTest::RunAWhile(const Window& window) {
    constexpr int kLooks = 4;  // the first of them may be of the button alone
    desktop_->Press(window, "ctrl+g");
    QImage last = desktop_->Picture(window);
    for (int i = 0; i < kLooks; i++)
        EXPECT_TRUE(desktop_->WaitForPicture(window, [&](const QImage& picture) {
            return std::exchange(last, picture) != picture;
        }));
    desktop_->Press(window, "ctrl+g");
}

// --- Saving and closing ---

bool SimulationDesktopTest::IsMarked(const Window& window, bool isEdited) const {
    return DesktopSession::WaitFor(
        [&] { return desktop_->Title(window).ends_with('*') == isEdited; });
}

void SimulationDesktopTest::Save(const Window& window, const std::string& path) const {
    const auto before = fs::last_write_time(path);
    desktop_->Press(window, "ctrl+s");
    ASSERT_TRUE(DesktopSession::WaitFor([&] { return fs::last_write_time(path) != before; }));
    EXPECT_TRUE(IsMarked(window, false));
}

bool SimulationDesktopTest::IsAsked(const std::string& path) const {
    return !desktop_->WaitForWindow(QuestionAbout(path)).empty();
}

void SimulationDesktopTest::GiveAnswer(const std::string& path, Answer answer, bool forGood) const {
    const Window box = desktop_->WaitForWindow(QuestionAbout(path));
    ASSERT_FALSE(box.empty()) << path;
    desktop_->Activate(box);
    // "Save" has the keyboard; after it come the check box, "Don't Save" and "Cancel".
    if (forGood) {
        desktop_->Press("Tab");
        desktop_->Press("space");
        desktop_->Press("shift+Tab");
    }
    const bool isCancel = answer == Answer::kCancel;
    if (isCancel || answer == Answer::kDontSave) desktop_->Press("Tab", isCancel ? 3 : 2);
    desktop_->Press(answer == Answer::kEscape ? "Escape" : "Return");
    ASSERT_TRUE(desktop_->WaitForNoWindow(QuestionAbout(path)));
}

// --- Documents ---

std::unique_ptr<SimulationDocument> SimulationDesktopTest::Read(const std::string& path) {
    auto document = std::make_unique<SimulationDocument>(nullptr);
    BMessage record;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed()) << path;
    EXPECT_FALSE(document->Load(record).Failed()) << path;
    return document;
}

const Body* SimulationDesktopTest::BodyNamed(SimulationDocument* document,
                                             const std::string& name) {
    for (const Body* body : document->Portal()->BodiesInMassOrder())
        if (body->Name() == name) return body;
    ADD_FAILURE() << "no body " << name;
    return nullptr;
}

std::string SimulationDesktopTest::Bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
