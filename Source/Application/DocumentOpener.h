// Makes the windows of simulations: new ones, and those of files, examples and recovery copies.
// Reports to whoever asked what could not be opened. Owned by the application, on its thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Application/OpenRequests.h"
#include "Platform/Application/BMessage.h"

class OpenPanel;
class ProgramResources;
class SimulationList;
struct DocumentError;
struct RecoveryCopy;
struct entry_ref;

class DocumentOpener {
public:
    // Nothing is owned.
    DocumentOpener(const ProgramResources* resources, SimulationList* simulations,
                   OpenPanel* panel);

    // New simulations have the panel's area as it is now.
    void TakePanelArea();
    // Each new one stands a little aside of the one before.
    Simulation* New();

    void OpenPaths(const std::vector<std::string>& paths);
    // Files that were chosen, or dropped on a window.
    void OpenRefs(const BMessage& message);
    // `requester`: the window that asks, or null.
    void OpenRecent(const std::string& path, const void* requester);
    // A copy: it is in no file yet.
    void OpenExample(const std::string& path);
    void OpenRecoveryCopy(const RecoveryCopy& copy);
    // Another program did so, and waits for the answer.
    void OpenHandedOver(const BMessage& message);

    // The window is complete, or closes. It is one of the list.
    void Shown(Simulation* simulation);
    void Closed(const Simulation* simulation, const BMessage& message);

private:
    using Request = OpenRequests::Request;
    using Init = std::function<void(Simulation*, std::unique_ptr<BMessage>)>;

    void OpenPath(const std::string& path, Simulation* reuse, const Request& request);
    void OpenFile(const entry_ref& ref, bool remembersDirectory, Simulation* reuse,
                  const Request& request);
    void OpenRead(BMessage&& archive, const entry_ref& directory, const char* name,
                  Simulation* reuse, const OpenRequests::Reading& reading);
    void OpenInsteadOfFirst(const std::string& path, const Init& init);
    Simulation* Create(const BMessage& archive, const entry_ref& directory, const char* name,
                       bool isNewlyCreated);
    void Note(const Request& request, const std::string& path, const DocumentError& error) const;
    // The request, or one of its documents, is done.
    void End(const Request& request);
    // Null where the program is to end.
    [[nodiscard]] Simulation* WindowFor(const OpenRequest& request);

    const ProgramResources* const resources_;
    SimulationList* const simulations_;
    OpenPanel* const panel_;
    BMessage newSimulation_;
    int untitledCount_ = 0;
    OpenRequests requests_;
};
