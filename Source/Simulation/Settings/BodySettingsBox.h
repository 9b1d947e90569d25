// The box "Body Settings" of a simulation's window: the choice of the system in focus, and entries
// of its quantities. Owned by the window, which takes its messages ("edbd", "rel2", "nwbd",
// "s_td"). Rules as for BView; but what the user has typed may be committed by any thread.
#pragma once

#include "Interface Widgets/EntryGroup.h"
#include "Platform/Interface/Handles/BBox.h"
#include "Simulation/History/Moment.h"
#include "Simulation/Settings/SystemList.h"

class BButton;
class BChoiceField;
class EpochPortal;
class InterfaceTexts;
class QuantityControl;
class MyTextControl;
class VectorControl;
struct DisplayContext;

class BodySettingsBox : public BBox {
public:
    // The portal is the document's own; neither is owned.
    BodySettingsBox(EpochPortal* portal, const DisplayContext& context);

    // Shows what is in force after these changes of the model (-1: all), or was at a moment of the
    // past. Takes the read lock; the caller must not hold it.
    void Redisplay(int32 changes, const Moment& moment = {});
    // Make what is half typed undoable commands; true if that changed something. Any thread that
    // holds no lock of the document, with or without the window's.
    bool CommitNonPhysical();  // the name
    bool CommitPhysical();     // mass, radius, position and velocity
    // Entries that would change the motion rest while it is calculated.
    void EnableRunControls(bool enable);

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

private:
    void AddSystem(const DisplayContext& context);
    void AddVectors(const DisplayContext& context);
    // Another system is in focus than the one shown.
    bool HasLostFocus(const Moment& moment) const;
    void SetFactories(int64 id);
    // `changed`: another list, or null.
    void ShowSystems(SystemList* changed, const SystemList::Focus& focus);
    void ListReferents();
    void EnableEntries();
    void Send(uint32 what, int64 system);

    EpochPortal* const portal_;
    const InterfaceTexts& texts_;
    BChoiceField* systems_ = nullptr;
    BChoiceField* referents_ = nullptr;
    MyTextControl* name_ = nullptr;
    QuantityControl* mass_ = nullptr;
    QuantityControl* radius_ = nullptr;
    VectorControl* position_ = nullptr;
    VectorControl* velocity_ = nullptr;
    EntryGroup physical_;  // all but the name
    BButton* trailDisc_ = nullptr;
    SystemList list_;          // what the choices show
    SystemList::Focus focus_;  // whose values the entries show
    bool isRunLocked_ = false;
};
