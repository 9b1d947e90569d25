#include "Application/DocumentOpener.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include "Application/OpenPanel.h"
#include "Application/SimulationList.h"
#include "Application/SingleLaunch.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/LocalRequests.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Storage/BEntry.h"
#include "Platform/Storage/BNode.h"
#include "Platform/Storage/BNodeInfo.h"
#include "Platform/Storage/BPath.h"
#include "Resources/ApplicationFeatures.h"
#include "Resources/CommonTexts.h"
#include "Resources/DocumentTexts.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/Document/DocumentError.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/Simulation.h"

namespace {

// How far a new simulation stands aside of the one before, and how many do so until the next one
// is back where the first was.
constexpr float kAside = 24.0f;
constexpr int kMaxAside = 8;

// What a document lacks that was copied without its attributes.
void MarkAsDocument(const std::string& path) {
    BNode node(path.c_str());
    BNodeInfo info(&node);
    std::string present;
    if (info.GetPreferredApp(&present) == B_ENTRY_NOT_FOUND)
        info.SetPreferredApp(SimulationFile::kPreferredApplication);
    if (info.GetType(&present) == B_ENTRY_NOT_FOUND) info.SetType(SimulationFile::kType);
}

// What has no tag is no document, and is left as it is.
bool HasTag(const DocumentError& error) {
    return !error.Failed() || error.text == kTextDamaged || error.text == kTextNestedTooDeeply ||
           error.text == kTextTooLarge;
}

}  // namespace

DocumentOpener::DocumentOpener(const ProgramResources* resources, SimulationList* simulations,
                               OpenPanel* panel)
    : resources_(resources),
      simulations_(simulations),
      panel_(panel),
      newSimulation_(resources->NewSimulation()),
      requests_(resources) {}

void DocumentOpener::TakePanelArea() {
    if (!newSimulation_.IsEmpty()) panel_->PutAreaInto(&newSimulation_);
}

// --- Making windows ---

Simulation* DocumentOpener::New() {
    BMessage record(newSimulation_);
    if (BPoint at; record.FindPoint(kWindowAtField, &at) == B_OK) {
        const float aside = kAside * static_cast<float>(untitledCount_++ % kMaxAside);
        static_cast<void>(record.ReplacePoint(kWindowAtField, {at.x + aside, at.y + aside}));
    }
    return Create(record, panel_->Directory(), nullptr, true);
}

Simulation* DocumentOpener::Create(const BMessage& archive, const entry_ref& directory,
                                   const char* name, bool isNewlyCreated) {
    return simulations_->Begin([&](Simulation* simulation) {
        simulation->Init(std::make_unique<BMessage>(archive), directory, name, isNewlyCreated);
    });
}

void DocumentOpener::Shown(Simulation* simulation) {
    const auto reading = requests_.Take(simulation);
    if (!reading) return;
    reading->request->opened = simulation;
    if (Simulation* const replaced = simulations_->FindUntouched(reading->replaced);
        replaced != nullptr)
        simulations_->Delete(replaced);
    End(reading->request);
}

void DocumentOpener::Closed(const Simulation* simulation, const BMessage& message) {
    const auto reading = requests_.Take(simulation);
    if (!reading) return;
    if (std::string reason; message.FindString(kReasonField, &reason) == B_OK)
        reading->request->complaints.push_back({reading->path, reason});
    End(reading->request);
}

// --- Requests ---

void DocumentOpener::OpenPaths(const std::vector<std::string>& paths) {
    const auto request = OpenRequests::Begin(nullptr);
    for (const std::string& path : paths)
        OpenPath(path, nullptr, request);
    End(request);
}

void DocumentOpener::OpenRefs(const BMessage& message) {
    void* requester = nullptr;
    // A message from the open panel has the field, even if it holds no simulation.
    const bool isFromPanel = message.FindPointer(kSimulationField, &requester) == B_OK;
    // Deliberately the same window for all of them: of several files over an untouched window the
    // last one stays.
    Simulation* const reuse = simulations_->FindUntouched(requester);
    const auto request = OpenRequests::Begin(simulations_->Find(requester));
    entry_ref ref;
    for (int32 i = 0; message.FindRef(kRefsField, i, &ref) == B_OK; i++)
        OpenFile(ref, isFromPanel, reuse, request);
    End(request);
}

void DocumentOpener::OpenRecent(const std::string& path, const void* requester) {
    const auto request = OpenRequests::Begin(simulations_->Find(requester));
    OpenPath(path, simulations_->FindUntouched(requester), request);
    End(request);
}

void DocumentOpener::OpenExample(const std::string& path) {
    OpenInsteadOfFirst(path, [&](Simulation* simulation, std::unique_ptr<BMessage> archive) {
        simulation->InitCopy(std::move(archive), panel_->Directory(), BPath(path.c_str()).Leaf());
    });
}

void DocumentOpener::OpenRecoveryCopy(const RecoveryCopy& copy) {
    OpenInsteadOfFirst(copy.path, [&](Simulation* simulation, std::unique_ptr<BMessage> archive) {
        simulation->InitFromRecovery(std::move(archive), copy);
    });
}

void DocumentOpener::OpenHandedOver(const BMessage& message) {
    int32 number = 0;
    if (message.FindInt32(LocalRequests::kNumber, &number) != B_OK) return;
    const auto request = OpenRequests::Begin(nullptr, number);
    std::string path;
    for (int32 i = 0; message.FindString(SingleLaunch::kPath, i, &path) == B_OK; i++)
        OpenPath(path, nullptr, request);
    End(request);
}

// --- Documents ---

void DocumentOpener::OpenPath(const std::string& path, Simulation* reuse, const Request& request) {
    entry_ref ref;
    if (get_ref_for_path(path.c_str(), &ref) == B_OK)
        OpenFile(ref, false, reuse, request);
    else
        Note(request, path, DocumentError::System(ENOENT));
}

// What is no document is not opened, and no box says so; the window that asked tells why.
void DocumentOpener::OpenFile(const entry_ref& ref, bool remembersDirectory, Simulation* reuse,
                              const Request& request) {
    const BEntry entry(ref, true);
    BPath path(ref);
    BEntry parent;
    entry_ref directory;
    if (entry.InitCheck() != B_OK || entry.GetPath(&path) != B_OK)
        return Note(request, path.Path(), DocumentError::System(ENOENT));
    BMessage archive;
    const DocumentError error =
        SimulationFile::Read(path.Path(), &archive, SimulationFile::Stamping::kInRecord);
    if (!HasTag(error)) return Note(request, path.Path(), error);
    if (entry.GetParent(&parent) != B_OK || parent.GetRef(&directory) != B_OK)
        return Note(request, path.Path(), DocumentError::System(ENOENT));
    if (remembersDirectory) panel_->SetDirectory(directory);
    MarkAsDocument(path.Path());
    if (error.Failed()) return Note(request, path.Path(), error);
    OpenRead(std::move(archive), directory, entry.Name(), reuse, {request, path.Path()});
}

void DocumentOpener::OpenRead(BMessage&& archive, const entry_ref& directory, const char* name,
                              Simulation* reuse, const OpenRequests::Reading& reading) {
    if (!OpenPanel::HasArea(archive)) panel_->PutAreaInto(&archive);
    if (reuse != nullptr)
        reuse->ReLoad(std::make_unique<BMessage>(std::move(archive)), directory, name);
    else if (Simulation* const reader = Create(archive, directory, name, false))
        requests_.Await(reader, reading);
    else
        Note(reading.request, reading.path, DocumentError::System(ENOMEM));
}

// In a window of its own, which `init` gives its record, and which takes the place of the one that
// the program began with, if all goes well.
void DocumentOpener::OpenInsteadOfFirst(const std::string& path, const Init& init) {
    Simulation* const first = simulations_->OnlyUntouched();
    const auto request = OpenRequests::Begin(first);
    auto archive = std::make_unique<BMessage>();
    const DocumentError error = SimulationFile::Read(path, archive.get());
    Simulation* reader = nullptr;
    if (!error.Failed())
        reader = simulations_->Begin(
            [&](Simulation* simulation) { init(simulation, std::move(archive)); });
    if (reader != nullptr)
        requests_.Await(reader, {request, path, first});
    else
        Note(request, path, error.Failed() ? error : DocumentError::System(ENOMEM));
    End(request);
}

// --- Answers ---

void DocumentOpener::Note(const Request& request, const std::string& path,
                          const DocumentError& error) const {
    request->complaints.push_back({path, error.Reason(*resources_)});
}

void DocumentOpener::End(const Request& request) {
    if (!OpenRequests::End(request.get())) return;
    BMessage answer(B_REPLY);
    for (const std::string& complaint : requests_.Lines(*request)) {
        answer.AddString(SingleLaunch::kComplaint, complaint);
        const std::string line = FillIn(resources_->InterfaceLabel(kTextPrinted), {complaint});
        if (request->handOver == 0) std::fwrite(line.data(), 1, line.size(), stderr);
    }
    if (request->handOver != 0) LocalRequests::Answer(request->handOver, answer);
    if (request->complaints.empty()) return;
    if (Simulation* const window = WindowFor(*request); window != nullptr) {
        BMessage message(kTellUser);
        message.AddString(kTextField, requests_.Summary(*request));
        WindowServer::Deliver(window, message);
        if (!window->IsHidden()) window->Activate();
    }
}

// The window that asked; else one of those that came of it, else the one in front, else a new one.
Simulation* DocumentOpener::WindowFor(const OpenRequest& request) {
    for (const Simulation* const window : {request.requester, request.opened})
        if (Simulation* const open = simulations_->Find(window); open != nullptr) return open;
    if (Simulation* const front = simulations_->Front(); front != nullptr) return front;
    return simulations_->IsQuitting() ? nullptr : New();
}
