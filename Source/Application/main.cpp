// orvek: the program with windows. Without a display it only prints its version and its usage.
#include <unistd.h>
#include <cstdio>
#include <string>
#include <string_view>

#include <cerrno>

#include "Application/Language.h"
#include "Application/SessionEnd.h"
#include "Application/SimApp.h"
#include "Application/SingleLaunch.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/EndSignals.h"
#include "Resources/ApplicationFeatures.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/Document/DocumentError.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kUsage = 2;
constexpr const char* kNewInstance = "--new-instance";
constexpr const char* kNoGallery = "--no-gallery";

int Print(FILE* to, const std::string& text, int status) {
    std::fwrite(text.data(), 1, text.size(), to);
    return status;
}

int Tell(const std::string& complaint, const ProgramResources& resources) {
    return Print(stderr, FillIn(resources.InterfaceLabel(kTextPrinted), {complaint}), 1);
}

// Opens the documents in the program that runs, or has it come to the front. What cannot be opened
// is reported here, where the user is looking. False if they have to be opened here.
bool HandOver(SingleLaunch* launch, const std::vector<std::string>& documents,
              const ProgramResources& resources, int* status) {
    std::vector<std::string> readable;
    *status = 0;
    for (const std::string& path : documents) {
        if (access(path.c_str(), R_OK) == 0) {
            readable.push_back(path);
            continue;
        }
        const std::string reason = DocumentError::System(errno).Reason(resources);
        *status = Tell(FillIn(resources.InterfaceLabel(kTextNotOpened), {path, reason}), resources);
    }
    if (readable.empty() && !documents.empty()) return true;
    const auto complaints = launch->HandOver(readable);
    if (!complaints) return false;
    for (const std::string& complaint : *complaints)
        *status = Tell(complaint, resources);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    ProgramResources texts;
    const std::string language = Language::Translate(&texts);
    const ProgramResources& resources = texts;
    for (int i = 1; i < argc; i++) {
        const std::string_view argument = argv[i];
        if (argument == "--help")
            return Print(stdout, resources.InterfaceLabel(kTextProgramHelp), 0);
        if (argument == "--version")
            return Print(stdout,
                         FillIn(resources.InterfaceLabel(kTextProgramVersion), {ORVEK_VERSION}), 0);
    }
    const EndSignals signals(EndSignals::NotIgnored({SIGTERM, SIGINT, SIGHUP}));
    SessionEnd sessionEnd(signals);
    WindowServer::SetNoDisplayText(resources.InterfaceLabel(kTextNoDisplay));
    WindowServer server(argc, argv);
    if (!language.empty()) server.SetLanguage(language);
    // What the toolkit has left.
    std::vector<std::string> documents;
    bool wantsOwn = false;
    SimApp::Welcome welcome = SimApp::Welcome::kGallery;
    for (std::size_t i = 1; i < server.Arguments().size(); i++) {
        const std::string& argument = server.Arguments()[i];
        if (argument == kNewInstance)
            wantsOwn = true;
        else if (argument == kNoGallery)
            welcome = SimApp::Welcome::kNone;
        else if (argument.starts_with("-"))
            return Print(stderr, FillIn(resources.InterfaceLabel(kTextProgramUsage), {argument}),
                         kUsage);
        else
            documents.push_back(argument);
    }
    SingleLaunch launch("orvek");
    int status = 0;
    if (!launch.IsFirst() && !wantsOwn) {
        // The other may take its time.
        signals.LetThrough();
        if (HandOver(&launch, documents, resources, &status)) return status;
        signals.Hold();
    }
    SimApp application(&resources,
                       launch.IsFirst() ? SimApp::Recovery::kOffer : SimApp::Recovery::kLeave,
                       welcome);
    const BMessenger messenger(&application);
    sessionEnd.Watch(messenger);
    if (launch.IsFirst()) launch.Listen(messenger);
    application.Run();
}
