// The panel in which the user names a file to save a simulation in: made when it is first needed,
// then kept. Remembers where it stood, for the document. Owned by the simulation's window and used
// on its thread.
#pragma once

#include <memory>
#include <string>

#include "Platform/Application/BMessenger.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class InterfaceTexts;
class MyFilePanel;
struct entry_ref;

class SavePanel {
public:
    // The texts are not owned.
    explicit SavePanel(const InterfaceTexts* texts);
    ~SavePanel();

    // Asks for a name; the answer `what` with ref "directory" and string "name" goes to `target`.
    void Ask(uint32 what, const BMessenger& target, const entry_ref& directory,
             const std::string& simulationName, const std::string& proposal);
    void Close();

    // The area in a document. One that was never set is not written.
    void FindArea(const BMessage& archive);
    void SetArea(BMessage* archive) const;

private:
    void MakePanel(const BMessenger& target, const entry_ref& directory);

    const InterfaceTexts* const texts_;
    std::unique_ptr<MyFilePanel> panel_;
    BPoint at_;
    float width_ = 0.0f;
    float height_ = 0.0f;
};
