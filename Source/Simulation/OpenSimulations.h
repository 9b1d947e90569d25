// The windows of all open simulations of the program, and their displays: which of the windows hold
// the same document, and where all of them stand. Any thread.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class BLooper;
class BWindow;

class OpenSimulations {
public:
    static OpenSimulations& Shared();

    // From now on the window holds the document there; empty: one in no file. How many windows
    // there are for it, with this one: the number that the window keeps.
    int32 Enter(const BWindow* window, const std::string& path);
    // Before the window goes, whatever it is.
    void Leave(const BWindow* window);
    // To that corner, or aside of it where another one of them has it. The windows of a simulation
    // that is a further one of its document stand aside of it as often as that, so that it does not
    // matter which of them come first; `simulation` may be the window itself.
    void MoveTo(BWindow* window, const BLooper* simulation, BPoint corner);
    // The same from where it stands, once: afterwards it is where the user has it.
    void Place(BWindow* window, const BLooper* simulation);
    // The same to where it covers least of the others.
    void PlaceBeside(BWindow* window, const BLooper* simulation);

private:
    struct Entry {
        const BWindow* window;
        std::string path;
        int32 number = 1;
        bool isPlaced = false;
    };
    // Null: there is none.
    [[nodiscard]] Entry* Find(const BLooper* window);
    [[nodiscard]] BPoint FreeCorner(const BWindow& window);
    [[nodiscard]] bool IsTaken(const BWindow* window, BPoint corner) const;

    std::mutex mutex_;
    std::vector<Entry> entries_;
};
