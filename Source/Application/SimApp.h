// The application: turns its messages into calls of the simulations' list, the opener of documents,
// the open panel and the boxes; and has what all share (texts, units, menus, the icon, the answers
// to questions) and what is remembered from one run to the next. Made, run and deleted by main. The
// calls of SimulationHost, and those that only read what was there from the start, may come from
// any thread; everything else belongs to the application's own.
#pragma once

#include <string>
#include <vector>

#include "Application/DefaultResponses.h"
#include "Application/DocumentOpener.h"
#include "Application/OpenPanel.h"
#include "Application/ProgramBoxes.h"
#include "Application/RecoveryOffers.h"
#include "Application/SimulationList.h"
#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/MenuArchives.h"
#include "Platform/Application/BMessageRunner.h"
#include "Platform/Interface/Canvas/BBitmap.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Storage/entry_ref.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/SimulationHost.h"

class Simulation;

class SimApp : public BApplication, public SimulationHost {
public:
    enum class Recovery { kOffer, kLeave };

    enum class Welcome { kNone, kGallery };

    // `resources` is not owned. `recovery`: whether recovery copies are offered; not in a second
    // running program, whose first one may still be making them. `welcome`: what is shown beside
    // the new simulation when the program is started for the first time.
    explicit SimApp(const ProgramResources* resources, Recovery recovery = Recovery::kOffer,
                    Welcome welcome = Welcome::kNone);
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
    [[nodiscard]] const std::vector<Simulation*>& Simulations() const { return simulations_.All(); }

private:
    void ReadSettings();
    void WriteSettings();

    void OpenRecent(const BMessage& message);
    void OpenHandedOver(const BMessage& message);
    void OfferCopy(const BMessage& message);
    void ShowGallery();
    void SimulationShown(const void* pointer);
    void SimulationClosed(const void* pointer, const BMessage& message);
    void MessageWindowClosed(const void* window);
    void QuitIfNothingIsLeft();
    void EndSession();
    void Activate();
    void HandBack(const BMessage& message);
    // What begins with a document, or the choice of one; false for any other message.
    bool OpenMessage(const BMessage& message);
    // What windows, the system and timers report.
    bool NoticeMessage(const BMessage& message);

    const ProgramResources* const resources_;
    const ResourceTexts texts_;
    const MenuArchives menus_;
    const BBitmap icon_;
    const BBitmap largeIcon_;
    const DisplayContext context_;
    const Recovery recovery_;
    Welcome welcome_;
    bool galleryShown_ = false;  // in this run or an earlier one

    SimulationList simulations_;
    OpenPanel openPanel_;
    DocumentOpener opener_;
    ProgramBoxes boxes_;
    DefaultResponses defaultResponses_;
    RecoveryOffers recoveryOffers_;
    const BMessageRunner copyTimes_;
};
