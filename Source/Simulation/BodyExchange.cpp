#include "Simulation/BodyExchange.h"

#include <cstring>
#include <utility>

#include "Exchange/CsvExport.h"
#include "Exchange/ExampleWriter.h"
#include "Exchange/RunCsv.h"
#include "Interface Widgets/MyFilePanel.h"
#include "Interface Widgets/PanelFolder.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BClipboard.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Storage/AtomicFile.h"
#include "Platform/Storage/entry_ref.h"
#include "Resources/Exchange.h"
#include "Resources/Film.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/MissingMassWindow.h"
#include "Simulation/SimulationControls.h"

namespace {

constexpr float kAskedAt = 40.0f;  // from the window's left-top corner

}  // namespace

BodyExchange::BodyExchange(SimulationDocument* document, RunControl* run, const RunHistory* history,
                           SimulationControls* controls, const ProgramResources* resources)
    : document_(document),
      history_(history),
      controls_(controls),
      resources_(resources),
      texts_(resources),
      import_(document, run, resources) {}

BodyExchange::~BodyExchange() {
    EndImport();
}

bool BodyExchange::Handle(const BMessage& message) {
    switch (message.what) {
        case kCopyAsText:
            Copy();
            break;
        case kPasteBodies:
            Paste();
            break;
        case kRequestImport:
            RequestImport();
            break;
        case kImport:
            Import(message);
            break;
        case MissingMassWindow::kGiven:
            if (double mass = 0.0; message.FindDouble(MissingMassWindow::kMass, &mass) == B_OK)
                AddWaiting(mass);
            break;
        case MissingMassWindow::kClosed:
            EndImport();
            break;
        case kRequestExport:
            RequestExport(kExport);
            break;
        case kRequestExportRun:
            RequestExport(kExportRun);
            break;
        case kExport:
        case kExportRun:
            Export(message);
            break;
        default:
            return false;
    }
    return true;
}

// Of the moment that is shown.
void BodyExchange::Copy() const {
    EpochPortal* const portal = document_->Portal();
    std::string text;
    {
        const ReadGuard guard(portal);
        const EpochPortal shown = controls_->Shown().PortalFrom(*portal);
        text = ExampleWriter(*resources_).Write(*shown.FocusEpoch());
    }
    BClipboard::SetText(text);
}

void BodyExchange::Paste() {
    const std::string text = BClipboard::Text();
    if (text.empty()) return Show(kTextClipboardEmpty);
    ReadBodies bodies;
    auto fault = BodyReader(*resources_).Read(text, &bodies);
    if (!fault) fault = import_.Add(bodies.text, kCommandPasteBodies);
    if (fault) return Show(kTextNotPasted, {fault->Text(*resources_)});
    controls_->ShowInFull(News(bodies));
}

void BodyExchange::RequestImport() {
    if (openPanel_ == nullptr) {
        openPanel_ = std::make_unique<MyFilePanel>(B_OPEN_PANEL, BMessenger(controls_->Window()));
        const BMessage answer(kImport);
        openPanel_->SetMessage(&answer);
        openPanel_->SetTitle(resources_->InterfaceLabel(kTextImportTitle).c_str());
    }
    openPanel_->Show();
}

// All that is to be said about them is said at once.
void BodyExchange::Import(const BMessage& files) {
    EndImport();
    entry_ref file;
    std::string path;
    for (int32 i = 0; files.FindRef("refs", i, &file) == B_OK; i++) {
        if (get_path_for_ref(file, &path) != B_OK) continue;
        ReadBodies bodies;
        if (const auto fault = BodyReader(*resources_).ReadFile(path, &bodies))
            AddNews(Filled(kTextNotImported, {path, fault->Text(*resources_)}));
        else if (bodies.massless.empty())
            AddNews(Add(path, bodies));
        else
            waiting_.push_back({path, std::move(bodies)});
    }
    if (!waiting_.empty()) AskForMasses();
    if (!news_.empty()) controls_->ShowInFull(news_);
}

std::string BodyExchange::Add(const std::string& path, const ReadBodies& bodies) {
    const auto fault =
        import_.Add(bodies.text, kCommandImportBodies, controls_->IsOfNewSimulation());
    return fault ? Filled(kTextNotImported, {path, fault->Text(*resources_)}) : News(bodies);
}

void BodyExchange::AskForMasses() {
    std::size_t count = 0;
    for (const Waiting& file : waiting_)
        count += file.bodies.massless.size();
    const BRect frame = controls_->Window()->Frame();
    massWindow_ = new MissingMassWindow({frame.left + kAskedAt, frame.top + kAskedAt}, count,
                                        &resources_->MassUnits(), controls_->Window(), &texts_);
    massWindow_->Show();
}

void BodyExchange::AddWaiting(double mass) {
    for (Waiting& file : std::exchange(waiting_, {})) {
        file.bodies.SetMissingMasses(mass);
        AddNews(Add(file.path, file.bodies));
    }
    controls_->ShowInFull(news_);
}

// Without an answer.
void BodyExchange::EndImport() {
    BLooper::QuitIfAlive(std::exchange(massWindow_, nullptr));
    waiting_.clear();
    news_.clear();
}

void BodyExchange::AddNews(const std::string& news) {
    if (!news_.empty()) news_ += '\n';
    news_ += news;
}

void BodyExchange::RequestExport(uint32 answer) {
    if (savePanel_ == nullptr) {
        savePanel_ = std::make_unique<MyFilePanel>(B_SAVE_PANEL, BMessenger(controls_->Window()));
        savePanel_->SetTitle(resources_->InterfaceLabel(kTextExportTitle).c_str());
    }
    const BMessage message(answer);
    savePanel_->SetMessage(&message);
    std::string name;
    {
        const ReadGuard guard(document_->Portal());
        name = document_->Portal()->FocusEpoch()->Name();
    }
    savePanel_->SetSaveText(Filled(kTextExportName, {name}).c_str());
    savePanel_->Show();
}

// Bodies are those of the moment that is shown.
void BodyExchange::Export(const BMessage& place) const {
    const auto choice = SaveChoice::From(place);
    std::string folder;
    if (!choice || get_path_for_ref(choice->directory, &folder) != B_OK) return;
    const std::string path = folder + '/' + choice->name;
    AtomicFile file;
    const auto write = [&file](std::string_view text) {
        file.Write(text.data(), text.size());  // a failure shows in Commit
    };
    if (file.Open(path) == B_OK) {
        if (place.what == kExport)
            write(Bodies());
        else if (!WriteRunsAsCsv(document_->Portal(), *history_, write))
            return Show(kTextNotExported, {path, resources_->InterfaceLabel(kTextFilmNoRun)});
        if (file.Commit() == B_OK) return Show(kTextWasExported, {path});
    }
    Show(kTextNotExported, {path, std::strerror(file.SystemError())});
}

std::string BodyExchange::Bodies() const {
    const ReadGuard guard(document_->Portal());
    const EpochPortal shown = controls_->Shown().PortalFrom(*document_->Portal());
    return BodiesAsCsv(*shown.FocusEpoch());
}

std::string BodyExchange::News(const ReadBodies& bodies) const {
    std::string told = Filled(kTextWasImported, {std::to_string(bodies.text.systems.size())});
    if (bodies.usesKilograms)
        told += std::string(" ") + resources_->InterfaceLabel(kTextOldKilogram);
    if (!bodies.massless.empty())
        told += ' ' + Filled(kTextMassesLeft, {std::to_string(bodies.massless.size())});
    return told;
}

std::string BodyExchange::Filled(int32 text, std::initializer_list<std::string_view> values) const {
    return FillIn(resources_->InterfaceLabel(text), values);
}

void BodyExchange::Show(int32 text, std::initializer_list<std::string_view> values) const {
    controls_->ShowInFull(Filled(text, values));
}
