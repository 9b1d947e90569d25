// The real application object, run on the main thread, and what a test does to it from another one.
// Its settings, recovery copies and documents lie in a folder that the driver is given.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "Application/SimApp.h"
#include "Platform/Application/BMessage.h"

class AppDriver {
public:
    // Starts it, as if the documents had been given at launch, and waits until it is ready.
    explicit AppDriver(const std::string& folder, const std::vector<std::string>& documents = {},
                       SimApp::Welcome welcome = SimApp::Welcome::kNone,
                       const ProgramResources& resources = Resources());
    // Ends it as the end of the desktop's session does, unless it has ended.
    ~AppDriver();
    AppDriver(const AppDriver&) = delete;
    AppDriver& operator=(const AppDriver&) = delete;

    // --- The application ---
    void Post(uint32 what) { Post(BMessage(what)); }
    void Post(const BMessage& message);
    // Posts B_REFS_RECEIVED, as the open panel does: with the simulation, which may be null.
    void Choose(const std::vector<std::string>& paths, Simulation* requester);
    // Returns when all that was posted has been handled.
    void Settle();
    [[nodiscard]] bool HasEnded() const { return hasEnded_; }
    [[nodiscard]] SimApp* operator->() const { return app_; }

    // --- Its simulations ---
    [[nodiscard]] std::vector<Simulation*> Simulations();
    // Of the windows that are seen, in the order of their making, separated by commas.
    [[nodiscard]] std::string Titles();
    // The foot of the window, in which it tells what has happened.
    [[nodiscard]] std::string Message(std::size_t index);
    // Makes a change in the simulation that is not saved.
    void Edit(std::size_t index);
    void Close(std::size_t index);
    // These are false when it does not come about in time.
    [[nodiscard]] bool Shows(const std::string& titles);
    [[nodiscard]] bool Ends() const;

    // False when it does not come about within half a minute.
    [[nodiscard]] static bool WaitUntil(const std::function<bool()>& condition);

private:
    [[nodiscard]] static const ProgramResources& Resources();

    std::atomic<SimApp*> app_{nullptr};
    std::atomic<bool> hasEnded_{false};
    std::binary_semaphore isReady_{0};
    std::thread runner_;
};

[[nodiscard]] const ProgramResources& TestResources();
// A new simulation's document is written there; the path.
std::string WriteDocument(const std::string& path);
// One whose only epoch cannot be used, as its reader finds out.
BMessage BadRecord();
// What no program of ours would write.
void PutUnchecked(const std::string& path, const BMessage& record);
