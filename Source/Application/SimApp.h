// The application: the open simulations, what they share (texts, units, menus, the icon, the
// answers to questions), the open panel, and what is remembered from one run to the next. Made, run
// and deleted by main. The calls of SimulationHost, and those that only read what was there from
// the start, may come from any thread; everything else belongs to the application's own.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Application/DefaultResponses.h"
#include "Application/OpenPanel.h"
#include "Application/OpenRequests.h"
#include "Application/QuitRound.h"
#include "Application/RecoveryOffers.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Base/ResourceTexts.h"
#include "Interface Widgets/MenuArchives.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessageRunner.h"
#include "Platform/Interface/Canvas/BBitmap.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Storage/entry_ref.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/SimulationHost.h"

class GuideWindow;
class MessageWindow;
class Simulation;

class SimApp : public BApplication, public SimulationHost {
public:
    enum class Recovery { kOffer, kLeave };

    // `resources` is not owned. `recovery`: whether recovery copies are offered; not in a second
    // running program, whose first one may still be making them.
    explicit SimApp(const ProgramResources* resources, Recovery recovery = Recovery::kOffer);
    ~SimApp() override;

    // Posts the message; as long as the port is full tries again, a hundred times 0.1 s apart, and
    // throws std::bad_alloc after that: the home platform's rule for a window that takes nothing.
    static void AttemptMessage(const BMessage* message, BLooper* looper);
    // Fills a 16 x 16 bitmap of B_CMAP8; leaves others alone.
    void GetIcon(BBitmap* bitmap) const;

    void ArgvReceived(const std::vector<std::string>& arguments) override;
    void RefsReceived(BMessage* message) override;
    void ReadyToRun() override;
    void AboutRequested() override;
    void MessageReceived(BMessage* message) override;
    // Agrees when no simulation is open; otherwise asks them one by one, and comes back when the
    // last one has closed.
    bool QuitRequested() override;
    void Quit() override;

    // --- SimulationHost ---
    [[nodiscard]] BLooper* Application() override { return this; }
    [[nodiscard]] const ProgramResources& Resources() const override { return *resources_; }
    [[nodiscard]] const DisplayContext& Context() const override { return context_; }
    [[nodiscard]] uint32 DefaultResponse(int32 windowID) const override {
        return defaultResponses_.Command(windowID);
    }
    void NoteDocument(const char* path) override;

    // For tests, on the application's thread.
    [[nodiscard]] const std::vector<Simulation*>& Simulations() const { return simulations_; }

private:
    void ReadSettings();
    void WriteSettings();

    // Each new one stands a little aside of the one before.
    Simulation* CreateSimulation();
    Simulation* CreateSimulation(const BMessage& archive, const entry_ref& directory,
                                 const char* name, bool isNewlyCreated);
    Simulation* BeginSimulation(const std::function<void(Simulation*)>& init);
    // Null unless it is one of ours.
    [[nodiscard]] Simulation* FindOpen(const void* simulation) const;
    // The same, for a window in which a file may be opened.
    [[nodiscard]] Simulation* FindUntouched(const void* simulation) const;
    void SimulationShown(const void* pointer);
    void SimulationClosed(const void* pointer, const BMessage& message);
    void DeleteSimulation(Simulation* simulation);
    void QuitIfNothingIsLeft();

    void OpenPath(const std::string& path, Simulation* reuse, const OpenRequests::Request& request);
    void OpenRecent(const BMessage& message);
    // In a window of its own, which `init` gives its record, and which takes the place of the only
    // one if that is untouched.
    void OpenInsteadOfFirst(
        const std::string& path,
        const std::function<void(Simulation*, std::unique_ptr<BMessage>)>& init);
    void OpenExample(const BMessage& message);
    void OpenHandedOver(const BMessage& message);
    void OpenFile(const entry_ref& ref, bool remembersDirectory, Simulation* reuse,
                  const OpenRequests::Request& request);
    void Complain(const OpenRequests::Request& request, const std::string& path,
                  const DocumentError& error) const;
    // The request, or one of its documents, is done.
    void End(const OpenRequests::Request& request);
    // Null where the program is to end.
    [[nodiscard]] Simulation* WindowFor(const OpenRequest& request);

    void Recover();
    void OfferCopy(const BMessage& message);
    void EndSession();
    void KeepRecoveryCopies();
    void Activate();
    void HandBack(const BMessage& message);
    // Shows it, or brings the one with the same id to the front.
    void ShowBox(int32 id, int32 title, const std::string& text);
    void MessageWindowClosed(const void* window);
    void ShowGuide();

    const ProgramResources* const resources_;
    const ResourceTexts texts_;
    const MenuArchives menus_;
    const BBitmap icon_;
    const BBitmap largeIcon_;
    const DisplayContext context_;
    const Recovery recovery_;

    std::vector<Simulation*> simulations_;
    int untitledCount_ = 0;
    std::vector<MessageWindow*> boxes_;  // that only tell something
    GuideWindow* guide_ = nullptr;       // null until it is asked for
    OpenPanel openPanel_;
    BMessage newSimulation_;
    OpenRequests openRequests_;
    DefaultResponses defaultResponses_;
    QuitRound quitRound_;
    RecoveryOffers recoveryOffers_;
    const BMessageRunner copyTimes_;
};
