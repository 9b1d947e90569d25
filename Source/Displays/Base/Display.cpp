#include "Displays/Base/Display.h"

#include <new>

#include "Displays/Base/WindowPlacement.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/CommonTexts.h"

namespace {

constexpr const char* kFrame = "Disp frame";
constexpr int32 kEverything = -1;

// What of a window must stay on the screen.
constexpr float kMinWidth = 200.0f;
constexpr float kMinHeight = 100.0f;

}  // namespace

Display::Display(BRect frame, const char* title, window_type look, EpochPortal* portal,
                 Benaphore* done, BLooper* owner, const InterfaceTexts* texts)
    : SubWindow(frame, title, look, B_ASYNCHRONOUS_CONTROLS, owner, texts),
      done_(done),
      portal_(portal) {
    portal_->AddObserver(this);
    Display::Changed(kEverything);
}

Display::~Display() {
    if (readOk_ != nullptr) delete_ben(readOk_);
}

int32 Display::Init(const char* simulationName) {
    SetTitle(simulationName);
    readOk_ = create_ben(0, "Read Ok");
    if (readOk_ == nullptr) return -1;
    drawThread_ = spawn_thread(display_entry, "Display Thread", B_LOW_PRIORITY, this);
    if (drawThread_ < 0) {
        drawThread_ = -1;
        return -1;
    }
    resume_thread(drawThread_);
    return 0;
}

void Display::SetKind(int32 type, const char* rootTitle) {
    type_ = type;
    rootTitle_ = rootTitle;
}

void Display::SetTitle(const char* simulationName) {
    SubWindow::SetTitle((RootTitle() + Texts().Label(kLabelOf) + simulationName).c_str());
}

// --- Changes of the model ---

void Display::Changed(int32 changes) {
    changes_.Put(changes);
}

void Display::MessageReceived(BMessage* message) {
    if (message->what == kRedisplay)
        Redisplay(changes_.Take());
    else
        SubWindow::MessageReceived(message);
}

void Display::PrepareForGo(int32 /*reportsPerSegment*/) {
    const BAutolock lock(this);
    if (lock.IsLocked()) changes_.Take();
}

// --- The drawing thread ---

int32 Display::display_entry(void* display) {
    return static_cast<Display*>(display)->DisplayThread();
}

int32 Display::DisplayThread() {
    for (;;) {
        release_ben(done_);
        acquire_ben(readOk_);
        if (quitting_) return 0;
        try {
            DisplayData();
        } catch (const std::bad_alloc&) {
            // This batch is not seen; the run does not depend on it.
        }
    }
}

void Display::ReadOk() {
    if (readOk_ != nullptr) release_ben(readOk_, 1, B_DO_NOT_RESCHEDULE);
}

void Display::ExitDrawThread() {
    if (drawThread_ == -1) return;
    quitting_ = true;
    ReadOk();
    // Takes back the unit that the thread gave when it began to wait.
    acquire_ben(done_);
    status_t result;
    wait_for_thread(drawThread_, &result);
    drawThread_ = -1;
}

// --- The window ---

void Display::Show() {
    SubWindow::Show();
    Changed(kEverything);
}

bool Display::QuitRequested() {
    Hide();
    BMessage doomed(kDeleteMe);
    doomed.AddPointer(kDoomedDisplay, this);
    SendToOwner(doomed);
    return false;
}

void Display::Quit() {
    portal_->RemoveObserver(this);
    ExitDrawThread();
    SubWindow::Quit();
}

// --- Archive ---

status_t Display::MiniArchive(BMessage* archive) const {
    return archive->AddRect(kFrame, Frame());
}

void Display::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kFrame, B_RECT_TYPE, "1", "the window stays where it was made",
                  "frame on the screen");
}

status_t Display::Regenerate(const BMessage& archive) {
    BRect frame;
    const status_t status = archive.FindRect(kFrame, &frame);
    if (status == B_OK) confine_to_frame_and_screen(this, frame, kMinWidth, kMinHeight);
    return status;
}
