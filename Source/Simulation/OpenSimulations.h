// The windows of all open simulations of the program, and their displays: which of the windows hold
// the same document, and where all of them stand. Any thread.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class BWindow;

class OpenSimulations {
public:
    static OpenSimulations& Shared();

    // From now on the window holds the document there; empty: one in no file, or a display. How
    // many windows there are for it, with this one: the number that the window keeps.
    int32 Enter(const BWindow* window, const std::string& path);
    // Before the window goes.
    void Leave(const BWindow* window);
    // To that corner, or aside of it where another one of them has it.
    void MoveTo(BWindow* window, BPoint corner);

private:
    struct Entry {
        const BWindow* window;
        std::string path;
        int32 number;
    };
    [[nodiscard]] bool IsTaken(const BWindow* window, BPoint corner) const;

    std::mutex mutex_;
    std::vector<Entry> entries_;
};
