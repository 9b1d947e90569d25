// One open simulation: the document, its run control and its displays, on a thread of its own. Made
// by the application, which it asks to be deleted ('klme') when its last display has been closed;
// ends with Quit.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BLooper.h"
#include "DisplayContext.h"
#include "RunControl.h"
#include "RunControlView.h"
#include "SimulationController.h"
#include "SimulationDocument.h"

class BFilePanel;
class ProjectionDisplay;
class ProgramResources;

class DocumentLooper : public BLooper, private RunControlView {
public:
    // None is owned. `path` is empty for a document that is in no file yet.
    DocumentLooper(const ProgramResources* resources, const DisplayContext* context,
                   std::string name, std::string path);
    ~DocumentLooper() override;

    // Takes the document over and opens its displays, or one. Before Run.
    DocumentError Init(const BMessage& record);

    void MessageReceived(BMessage* message) override;
    // Stops the calculation and closes the displays.
    void Quit() override;

private:
    void LockWindow() override { Lock(); }
    void UnlockWindow() override { Unlock(); }
    void RunStarting() override;
    void RunStopped() override;

    void CreateDisplay(const BMessage* archive);
    void DeleteDisplay(ProjectionDisplay* display);
    void TellDisplays(uint32 what);
    void Save();
    void SaveAs();
    void SaveRequested(const BMessage& message);
    [[nodiscard]] BMessage DisplayFields() const;

    const ProgramResources* const resources_;
    const DisplayContext* const context_;
    std::string name_;
    std::string path_;
    SimulationDocument document_;
    RunControl run_;
    SimulationController controller_;
    std::vector<ProjectionDisplay*> displays_;
    std::unique_ptr<BFilePanel> savePanel_;
};
