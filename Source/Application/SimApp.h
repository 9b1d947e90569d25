// The application: what all simulations share, and the list of those that are open. Made, run and
// deleted by main.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BApplication.h"
#include "DisplayContext.h"
#include "MenuArchives.h"
#include "ProgramResources.h"
#include "ResourceTexts.h"

class BFilePanel;
class DocumentLooper;
struct DocumentError;

class SimApp : public BApplication {
public:
    // `resources` is not owned.
    explicit SimApp(const ProgramResources* resources);
    ~SimApp() override;

    void ArgvReceived(const std::vector<std::string>& arguments) override;
    void RefsReceived(BMessage* message) override;
    void ReadyToRun() override;
    void MessageReceived(BMessage* message) override;
    // Agrees, and closes all simulations.
    bool QuitRequested() override;

private:
    void CreateSimulation();
    void OpenFile(const std::string& path);
    void Add(const BMessage& record, const std::string& name, const std::string& path);
    void DeleteSimulation(DocumentLooper* simulation);
    void Open();
    void Complain(const std::string& file, const DocumentError& error) const;

    const ProgramResources* const resources_;
    const ResourceTexts texts_;
    const MenuArchives menus_;
    const DisplayContext context_;
    std::vector<DocumentLooper*> simulations_;
    std::unique_ptr<BFilePanel> openPanel_;
};
