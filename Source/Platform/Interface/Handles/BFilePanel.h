// The desktop's own dialog for choosing files to open, or a name to save under. Owned by its maker,
// used by one thread at a time; returns at once, the choice comes as a message.
//
// Open panel: B_REFS_RECEIVED (or the panel's message) with refs "refs". Save panel:
// B_SAVE_REQUESTED (or the panel's message) with ref "directory" and string "name". Closed without
// a choice: B_CANCEL with int32 kCancelledField (the code of the message that is not sent). All
// with pointer "source", the panel.
#pragma once

#include <memory>
#include <string>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Storage/entry_ref.h"
#include "Platform/Support/GraphicsDefs.h"

class FilePanelPart;

enum file_panel_mode { B_OPEN_PANEL, B_SAVE_PANEL };

class BFilePanel {
public:
    static constexpr const char* kCancelledField = "old_what";

    // `directory` may be null; `message` is copied, null for the usual one.
    explicit BFilePanel(file_panel_mode mode = B_OPEN_PANEL, const BMessenger& target = {},
                        const entry_ref* directory = nullptr, bool allowsMultiple = true,
                        const BMessage* message = nullptr);
    virtual ~BFilePanel();
    BFilePanel(const BFilePanel&) = delete;
    BFilePanel& operator=(const BFilePanel&) = delete;

    // Showing a panel that shows brings it to the front.
    virtual void Show();
    virtual void Hide();
    [[nodiscard]] bool IsShowing() const;

    void SetTarget(const BMessenger& target);
    void SetMessage(const BMessage* message);
    virtual void SetPanelDirectory(const entry_ref* directory);
    // The name that a save panel proposes.
    void SetSaveText(const char* text);
    void SetTitle(const char* title);

    // Place and size on the screen; where the desktop has dialogs of its own it may ignore them.
    [[nodiscard]] BRect Frame() const;
    void SetFrame(BRect frame);

private:
    const file_panel_mode mode_;
    const std::shared_ptr<FilePanelPart> part_;
};
