// Whoever shows something of the model and wants to be told of changes. Called on the thread that
// made the change or wants to make one.
#pragma once

#include "Platform/Support/SupportDefs.h"

class Observer {
public:
    virtual ~Observer() = default;

    // `what`: a mask of change flags (ChangeFlags.h). Called with the subject's observer list
    // locked and often the model too: note it and return, never wait.
    virtual void Changed(int32 what) = 0;
    // Push pending edits (a half-typed value) into the model now, each as a command of its own;
    // true if that changed something.
    virtual bool CommitChanges() = 0;
};
