// Base of the windows that show a running simulation: a window, an observer of the model, and a
// consumer of the calculator's reports, with a thread of its own that draws. Made, initialised and
// deleted (by Quit) by the thread that owns the simulation; deleted only while the calculator
// rests.
//
// Threads. The window's own handles messages and redisplays. The drawing thread draws batches. The
// calculation thread prepares it for a run, hands over positions and says that they may be drawn.
// Changes of the model come on any thread. What is drawn is guarded by the window's lock. The
// calculator and the drawing thread are coupled by two benaphores only: "Read Ok", which has a unit
// for every batch to be drawn, and the calculator's, which gets a unit whenever this display is
// ready for a batch.
#pragma once

#include <atomic>

#include "Calculation/ReportConsumer.h"
#include "Interface Widgets/ChangeInbox.h"
#include "Interface Widgets/SubWindow.h"
#include "Model/Sharing/Benaphore.h"
#include "Model/Sharing/Observer.h"
#include "Platform/Application/FieldDescription.h"

class EpochPortal;

class Display : public SubWindow, public Observer, public ReportConsumer {
public:
    // Portal, benaphore, owner and texts are not owned. Everything waits to be redisplayed.
    Display(BRect frame, const char* title, window_type look, EpochPortal* portal, Benaphore* done,
            BLooper* owner, const InterfaceTexts* texts);
    ~Display() override;

    // Names the window and starts the drawing thread; 0, or -1 and the display cannot be used.
    [[nodiscard]] virtual int32 Init(const char* simulationName);
    // The window's title becomes "<kind of display> of <simulation>".
    void SetTitle(const char* simulationName) override;
    // Draws the batch last read. Drawing thread.
    virtual void DisplayData() = 0;
    void ReadData(int32 reports, double* times, double* positions, double* velocities) override = 0;
    // Brings the display up to date after these changes of the model. Window's thread.
    virtual void Redisplay(int32 changes) = 0;
    // The run's own preparation supersedes what waits to be redisplayed.
    void PrepareForGo(int32 reportsPerSegment) override;
    // The display's own fields in a document. The statuses are those of BMessage.
    virtual status_t MiniArchive(BMessage* archive) const;
    virtual status_t Regenerate(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);

    [[nodiscard]] EpochPortal* Epoch() const { return portal_; }
    // The number that tells the kind of display in documents.
    [[nodiscard]] int32 Type() const { return type_; }
    // The first word of the window's title.
    [[nodiscard]] const char* RootTitle() const { return rootTitle_; }

    // Lets the drawing thread draw a batch.
    void ReadOk() override;
    [[nodiscard]] bool TakesPictures() const override { return true; }
    // Ends the drawing thread, if there is one. The calculator must rest.
    void ExitDrawThread();

    // One message for any number of changes.
    void Changed(int32 changes) override;
    // There are no edits in a display.
    bool CommitChanges() override { return false; }

    bool LockConsumer() override { return Lock(); }
    void UnlockConsumer() override { Unlock(); }

    void MessageReceived(BMessage* message) override;
    void Show() override;
    // Asks the owner to delete the display, and does not agree.
    bool QuitRequested() override;
    void Quit() override;

protected:
    void SetKind(int32 type, const char* rootTitle);

private:
    static int32 display_entry(void* display);
    int32 DisplayThread();

    std::atomic<bool> quitting_{false};
    thread_id drawThread_ = -1;
    Benaphore* readOk_ = nullptr;
    Benaphore* const done_;
    EpochPortal* const portal_;
    ChangeInbox changes_{this};
    int32 type_ = 0;
    const char* rootTitle_ = "Generic Display";
};
