// The displays of one simulation: made, deleted, notified and archived together. Owned by the
// simulation's window and used on its thread, with the window locked; the calculator is held at
// rest while the list changes.
#pragma once

#include <deque>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class BLooper;
class Display;
class RunControl;
class RunHistory;
class ShownMoment;
class SimulationDocument;
struct DisplayContext;

class DisplayList {
public:
    // None is owned. `owner` gets the messages of the displays.
    DisplayList(SimulationDocument* document, const RunHistory* history, ShownMoment* shown,
                RunControl* run, BLooper* owner, const DisplayContext& context);

    // A display of the type (1: projection, 2: space, 3: chart), as the archive has it or as they
    // usually are; false if there is none such.
    bool Create(int32 type, const BMessage* archive, const char* simulationName);
    // Nothing for a pointer that is not in the list.
    void Delete(const Display* display);
    void DeleteAll();
    [[nodiscard]] int32 Count() const { return static_cast<int32>(displays_.size()); }
    // Those of the document that are not open.
    [[nodiscard]] int32 CountWaiting() const { return static_cast<int32>(waiting_.size()); }
    // Opens as many of them as open by themselves.
    void OpenWaiting(const char* simulationName);

    // Moves displays that the frame covers to its right, as far as the screen has room there.
    void KeepClearOf(BRect frame) const;
    void Tell(uint32 what) const;
    void SetTitles(const char* simulationName) const;
    // The unit (in m) in which the user sees places: their scale dialogs begin with it.
    void SetPreferredUnits(double unit);

    // Replace all displays by those of the document, of which only the first so many open by
    // themselves; and write them, with those that are not open as they were read.
    static constexpr int32 kMaxOpenedUnasked = 32;
    void Find(const char* simulationName);
    void Archive(BMessage* into) const;

private:
    [[nodiscard]] Display* Make(int32 type, const char* simulationName) const;
    template <typename Kind>
    [[nodiscard]] Display* MakeKind(const char* simulationName) const;
    void TellUnits(Display* display) const;

    SimulationDocument* const document_;
    const RunHistory* const history_;
    ShownMoment* const shown_;
    RunControl* const run_;
    BLooper* const owner_;
    const DisplayContext& context_;
    struct Waiting {
        BMessage archive;
        int32 type;
    };

    std::vector<Display*> displays_;
    std::deque<Waiting> waiting_;
    double preferredUnits_ = 0.0;  // not known yet
};
