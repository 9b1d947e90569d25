// A document with displays, as its owner has it: rests while displays come and go.
#pragma once

#include <vector>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/MenuArchives.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Tests/Displays/ReceivedMessages.h"
#include "Tests/Platform/Interface/Settle.h"
#include "Tests/Simulation/Document/SampleDocument.h"

// What all documents of the tests share.
const ProgramResources& TestResources();
const DisplayContext& TestContext();

// Notes what it is sent; needs no thread of a document.
class TestOwner : public BLooper {
public:
    TestOwner() : BLooper("owner") { Run(); }

    void MessageReceived(BMessage* message) override { received_.Note(*message); }
    BMessage WaitFor(uint32 what) { return received_.WaitFor(what); }
    bool Has(uint32 what) { return received_.Has(what); }

private:
    ReceivedMessages received_;
};

class TestDocument {
public:
    TestDocument();
    ~TestDocument();
    TestDocument(const TestDocument&) = delete;
    TestDocument& operator=(const TestDocument&) = delete;

    // A display of the caller's, made with `portal`, `writeOk` and `owner`.
    void Add(Display* display);
    void Remove(Display* display);
    ProjectionDisplay* AddProjection();

    // Lets the calculation run for so many steps, and pauses it.
    void Run(int64 steps);
    void Go() { control.UnPause(); }
    void Pause() { control.Pause(); }

    TestOwner* const owner = new TestOwner;
    RunControlView view;
    SimulationDocument document{nullptr};
    EpochPortal* const portal = document.Portal();
    Benaphore* const writeOk = document.GetCalculator()->WriteOk();
    RunControl control{portal, document.GetCalculator(), &view};

private:
    std::vector<Display*> displays_;
};
