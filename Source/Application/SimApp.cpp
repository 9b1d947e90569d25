#include "SimApp.h"

#include <algorithm>
#include <cstdio>

#include "AppDefs.h"
#include "BFilePanel.h"
#include "BMessage.h"
#include "BMessenger.h"
#include "BPath.h"
#include "DocumentError.h"
#include "DocumentLooper.h"
#include "InterfaceLabels.h"
#include "ProgramMessages.h"
#include "ProgramTexts.h"
#include "SimulationFile.h"
#include "SubWindow.h"
#include "TextTemplate.h"

namespace {

constexpr const char* kSignature = SimulationFile::kPreferredApplication;

}  // namespace

SimApp::SimApp(const ProgramResources* resources)
    : BApplication(kSignature),
      resources_(resources),
      texts_(resources),
      menus_(texts_, resources->MassUnits(), resources->DistanceUnits(), resources->SpeedUnits(),
             resources->TimeUnits()),
      context_{&texts_, &resources->DistanceUnits(), &resources->TimeUnits(), &menus_} {}

SimApp::~SimApp() = default;

// --- Simulations ---

void SimApp::ReadyToRun() {
    if (simulations_.empty()) CreateSimulation();
}

void SimApp::ArgvReceived(const std::vector<std::string>& arguments) {
    for (std::size_t i = 1; i < arguments.size(); i++)
        OpenFile(arguments[i]);
}

void SimApp::RefsReceived(BMessage* message) {
    entry_ref ref;
    for (int32 i = 0; message->FindRef("refs", i, &ref) == B_OK; i++)
        if (const BPath path(ref); path.InitCheck() == B_OK) OpenFile(path.Path());
}

void SimApp::CreateSimulation() {
    Add(resources_->NewSimulation(), resources_->InterfaceLabel(kLabelUntitled), {});
}

void SimApp::OpenFile(const std::string& path) {
    BMessage record;
    if (DocumentError error = SimulationFile::Read(path, &record); error.Failed())
        Complain(path, error);
    else
        Add(record, BPath(path.c_str()).Leaf(), path);
}

void SimApp::Add(const BMessage& record, const std::string& name, const std::string& path) {
    auto* const simulation = new DocumentLooper(resources_, &context_, name, path);
    if (DocumentError error = simulation->Init(record); error.Failed()) {
        Complain(path.empty() ? name : path, error);
        return simulation->Quit();
    }
    simulations_.push_back(simulation);
    simulation->Run();
}

void SimApp::Complain(const std::string& file, const DocumentError& error) const {
    const std::string text =
        FillIn(texts_.Label(kTextCannotOpen), {file, error.Reason(*resources_)});
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void SimApp::DeleteSimulation(DocumentLooper* simulation) {
    if (std::erase(simulations_, simulation) == 0) return;
    if (simulation->Lock()) simulation->Quit();
    const bool isChoosing = openPanel_ != nullptr && openPanel_->IsShowing();
    if (simulations_.empty() && !isChoosing) static_cast<void>(PostMessage(B_QUIT_REQUESTED));
}

bool SimApp::QuitRequested() {
    while (!simulations_.empty()) {
        DocumentLooper* const simulation = simulations_.back();
        simulations_.pop_back();
        if (simulation->Lock()) simulation->Quit();
    }
    return true;
}

// --- Messages ---

void SimApp::Open() {
    if (openPanel_ == nullptr)
        openPanel_ =
            std::make_unique<BFilePanel>(B_OPEN_PANEL, BMessenger(static_cast<BHandler*>(this)));
    openPanel_->Show();
}

void SimApp::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kNewSimulation:
            return CreateSimulation();
        case kOpen:
            return Open();
        case kDeleteMe: {
            void* simulation = nullptr;
            if (message->FindPointer(kDoomedSimulation, &simulation) == B_OK)
                DeleteSimulation(static_cast<DocumentLooper*>(simulation));
            break;
        }
        case B_CANCEL:
            if (simulations_.empty()) static_cast<void>(PostMessage(B_QUIT_REQUESTED));
            break;
        default:
            BApplication::MessageReceived(message);
    }
}
