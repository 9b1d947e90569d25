#include "Tests/Simulation/TestSimulation.h"

#include <algorithm>
#include <cstdlib>

#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Server/WindowPart.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Simulation/Document/SimulationFile.h"

// --- The application ---

void TestApplication::MessageReceived(BMessage* message) {
    void* simulation = nullptr;
    for (const uint32 step : {kBuildMenuBar, kBuildRootView, kBuildBodySettings,
                              kBuildGlobalControls, kArrangeWindow, kShowWindow})
        if (message->what == step && message->FindPointer(kSimulationField, &simulation) == B_OK)
            static_cast<void>(
                static_cast<BLooper*>(static_cast<Simulation*>(simulation))->PostMessage(message));
    received_.Note(*message);
}

bool TestApplication::Has(uint32 what) {
    BMessage reply;
    const BMessage ping(FourCC("ping"));
    static_cast<void>(BMessenger(static_cast<BHandler*>(this)).SendMessage(&ping, &reply));
    return received_.Has(what);
}

TestHost::TestHost() {
    setenv("XDG_STATE_HOME", folder.Path().c_str(), 1);
}

TestHost::~TestHost() {
    if (application->Lock()) application->Quit();
}

void TestHost::NoteDocument(const char* path) {
    const std::lock_guard lock(mutex_);
    noted_.emplace_back(path);
}

std::vector<std::string> TestHost::Noted() {
    const std::lock_guard lock(mutex_);
    return noted_;
}

RecoveryFolder TestHost::Recovery() const {
    return RecoveryFolder(folder.Path() + "/orvek/recovery");
}

// --- A simulation ---

namespace {

constexpr BRect kFrame{40.0f, 40.0f, 240.0f, 240.0f};

entry_ref RefOf(const std::string& folder) {
    entry_ref ref;
    static_cast<void>(get_ref_for_path(folder.c_str(), &ref));
    return ref;
}

}  // namespace

TestSimulation::TestSimulation(TestHost* theHost, const BMessage& record, const char* name)
    : host(theHost), window(new Simulation(kFrame, theHost)) {
    window->Init(std::make_unique<BMessage>(record), RefOf(host->folder.Path()), name,
                 name == nullptr);
    host->application->WaitFor(kShowWindow);
    Settle();
}

TestSimulation::TestSimulation(TestHost* theHost, const RecoveryCopy& copy)
    : host(theHost), window(new Simulation(kFrame, theHost)) {
    auto record = std::make_unique<BMessage>();
    static_cast<void>(SimulationFile::Read(copy.path, record.get()).Failed());
    window->InitFromRecovery(std::move(record), copy);
    host->application->WaitFor(kShowWindow);
    Settle();
}

TestSimulation::~TestSimulation() {
    Quit();
}

void TestSimulation::Quit() {
    if (window != nullptr && window->Lock()) window->Quit();
    window = nullptr;
}

BMessage TestSimulation::Send(uint32 what) {
    return Send(BMessage(what));
}

BMessage TestSimulation::Send(const BMessage& message) {
    BMessage reply;
    static_cast<void>(BMessenger(static_cast<BHandler*>(window)).SendMessage(&message, &reply));
    return reply;
}

void TestSimulation::Name(uint32 answer, const std::string& folder, const std::string& name) {
    BMessage message(answer);
    const entry_ref directory = RefOf(folder);
    message.AddRef("directory", &directory);
    message.AddString("name", name);
    Send(message);
}

BMessage TestSimulation::SavedAs(const char* name) {
    Name(FourCC("SAVE"), host->folder.Path(), name);
    BMessage record;
    static_cast<void>(SimulationFile::Read(host->Path(name), &record).Failed());
    return record;
}

std::vector<ProjectionDisplay*> TestSimulation::Displays() const {
    std::vector<ProjectionDisplay*> displays;
    for (int32 i = 0; i < BApplication::CountWindows(); i++)
        if (auto* const display = dynamic_cast<ProjectionDisplay*>(BApplication::WindowAt(i));
            display != nullptr && display->Owner() == static_cast<BLooper*>(window))
            displays.push_back(display);
    return displays;
}

ProjectionDisplay* TestSimulation::FirstDisplay() const {
    return Displays().front();
}

std::size_t TestSimulation::CountDisplays() const {
    return Displays().size();
}

EpochPortal* TestSimulation::Portal() const {
    return FirstDisplay()->Epoch();
}

std::size_t TestSimulation::CountBodies() const {
    EpochPortal* const portal = Portal();
    portal->ReadLock();
    const std::size_t count = portal->BodiesInMassOrder().size();
    portal->ReadUnlock();
    return count;
}

void TestSimulation::Settle() const {
    ::Settle(window);
}

bool TestSimulation::IsMarkedModified() const {
    Settle();
    return WindowServer::Ask([this] { return window->Part()->Widget()->isWindowModified(); });
}

double TestSimulation::Time() const {
    EpochPortal* const portal = Portal();
    const ReadGuard guard(portal);
    return portal->FocusEpoch()->Time();
}

bool TestSimulation::IsEnabled(uint32 command) const {
    Settle();
    if (!window->Lock()) return false;
    bool isEnabled = false;
    if (auto* const bar = dynamic_cast<BMenuBar*>(window->FindView("Main Menu Bar")))
        for (int32 i = 0; i < bar->CountItems(); i++)
            if (const BMenuItem* const item = bar->SubmenuAt(i)->FindItem(command))
                isEnabled = item->IsEnabled();
    window->Unlock();
    return isEnabled;
}

std::string TestSimulation::GoLabel() const {
    Settle();
    if (!window->Lock()) return {};
    std::string label =
        static_cast<BMenu*>(window->FindView("Main Menu Bar"))->FindItem(kTogglePause)->Label();
    window->Unlock();
    return label;
}

std::string TestSimulation::Text(const char* view) const {
    if (!window->Lock()) return {};
    std::string text = static_cast<BStringView*>(window->FindView(view))->Text();
    window->Unlock();
    return text;
}

float TestSimulation::WidthOf(const char* view) const {
    if (!window->Lock()) return 0.0f;
    const float width = window->FindView(view)->Bounds().Width();
    window->Unlock();
    return width;
}

std::string TestSimulation::Message() const {
    std::string text = Text("Message");
    std::erase(text, '\n');  // between lines
    return text;
}

int TestSimulation::CountMessageLines() const {
    return static_cast<int>(std::ranges::count(Text("Message"), '\n')) + 1;
}
