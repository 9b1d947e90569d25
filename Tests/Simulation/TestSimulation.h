// Simulations as the application has them: a host with a looper that hands build messages back, and
// a way to send a simulation messages and to look at what it does.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/RecoveryFolder.h"
#include "Simulation/Simulation.h"
#include "Simulation/SimulationHost.h"
#include "Tests/Displays/ReceivedMessages.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Platform/TestFolder.h"

// Stands for the application.
class TestApplication : public BLooper {
public:
    TestApplication() : BLooper("application") { Run(); }

    void MessageReceived(BMessage* message) override;
    BMessage WaitFor(uint32 what) { return received_.WaitFor(what); }
    // Has one come that was not waited for?
    bool Has(uint32 what);

private:
    ReceivedMessages received_;
};

// Recovery copies are kept in a folder of the test's.
class TestHost : public SimulationHost {
public:
    TestHost();
    ~TestHost() override;

    [[nodiscard]] BLooper* Application() override { return application; }
    [[nodiscard]] const ProgramResources& Resources() const override { return TestResources(); }
    [[nodiscard]] const DisplayContext& Context() const override { return TestContext(); }
    [[nodiscard]] uint32 DefaultResponse(int32 /*windowID*/) const override { return answer; }
    void NoteDocument(const char* path) override;
    [[nodiscard]] std::vector<std::string> Noted();

    TestFolder folder;
    TestApplication* const application = new TestApplication;
    uint32 answer = 0;  // to the question whether to save, for good

    [[nodiscard]] RecoveryFolder Recovery() const;
    [[nodiscard]] std::string Path(const char* name) const { return folder.Path() + '/' + name; }

private:
    std::mutex mutex_;
    std::vector<std::string> noted_;
};

class TestSimulation {
public:
    // From the template, or from a record: an untitled one, or one from a file in the host's
    // folder. Built, unless it could not be read.
    explicit TestSimulation(TestHost* host,
                            const BMessage& record = TestResources().NewSimulation(),
                            const char* name = nullptr);
    TestSimulation(TestHost* host, const RecoveryCopy& copy);
    // Quits it, as the application does.
    ~TestSimulation();
    TestSimulation(const TestSimulation&) = delete;
    TestSimulation& operator=(const TestSimulation&) = delete;

    Simulation* operator->() const { return window; }
    void Quit();

    // Returns when it has been handled; the answer, if there is one.
    BMessage Send(uint32 what);
    BMessage Send(const BMessage& message);
    // The answer of a save panel.
    void Name(uint32 answer, const std::string& folder, const std::string& name);
    // Saves it in the host's folder and reads the file.
    BMessage SavedAs(const char* name);

    // The document, as its first display knows it.
    [[nodiscard]] ProjectionDisplay* FirstDisplay() const;
    [[nodiscard]] EpochPortal* Portal() const;
    [[nodiscard]] std::size_t CountDisplays() const;
    [[nodiscard]] std::size_t CountBodies() const;
    // Waits until the server and the window have done what was asked for.
    void Settle() const;
    [[nodiscard]] bool IsMarkedModified() const;
    [[nodiscard]] std::string GoLabel() const;
    // Of the view with that name, as it is shown.
    [[nodiscard]] std::string Text(const char* view) const;
    [[nodiscard]] float WidthOf(const char* view) const;
    [[nodiscard]] double Time() const;  // s, of the epoch in focus
    // Of the menu bar, the item with that command.
    [[nodiscard]] bool IsEnabled(uint32 command) const;
    [[nodiscard]] std::string Message() const;
    [[nodiscard]] int CountMessageLines() const;

    TestHost* const host;
    Simulation* window;

private:
    std::vector<ProjectionDisplay*> Displays() const;
};
